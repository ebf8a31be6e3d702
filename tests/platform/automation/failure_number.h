#pragma once

#include "platform/automation/failure.h"

// The classic number a call fails with, or 0 when it does not fail.
template <class F>
int FailureNumber(F&& call) {
    try {
        call();
    } catch (const kw::automation::Failure& failure) {
        return failure.Number();
    }
    return 0;
}
