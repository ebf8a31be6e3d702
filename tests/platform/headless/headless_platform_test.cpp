// The deterministic platform: the virtual clock, timers in due order, modal nesting, boxes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/automation/failure.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/headless/headless_platform.h"

namespace kw::headless {
namespace {

using forms::mb::kResultOk;
using forms::mb::kResultYes;

TEST(HeadlessClock, TimersFireInDueOrderEachAtItsIntervalWithTheClockAtTheirDueTime) {
    HeadlessPlatform p;
    std::vector<std::string> fired;
    p.SetTimer(300, [&] { fired.push_back("slow@" + std::to_string(p.Now())); });
    p.SetTimer(100, [&] { fired.push_back("fast@" + std::to_string(p.Now())); });
    p.Advance(650);
    EXPECT_EQ(fired, (std::vector<std::string>{"fast@100", "fast@200", "slow@300", "fast@300",
                                               "fast@400", "fast@500", "slow@600", "fast@600"}));
    EXPECT_EQ(p.Now(), 650);
}

TEST(HeadlessClock, SleepBlocksWithoutRunningAndDoEventsRunsWhatIsDue) {
    HeadlessPlatform p;
    int ticks = 0;
    p.SetTimer(1000, [&] { ++ticks; });
    p.Sleep(2500);
    EXPECT_EQ(ticks, 0);
    EXPECT_EQ(p.Now(), 2500);
    p.DoEvents();
    EXPECT_EQ(ticks, 1) << "a timer overdue twice fires once";
    p.Advance(999);
    EXPECT_EQ(ticks, 1);
    p.Advance(1);
    EXPECT_EQ(ticks, 2) << "and counts its interval on from when it fired";
}

TEST(HeadlessClock, ATimerThatKillsItselfOrStartsAnotherStaysConsistent) {
    HeadlessPlatform p;
    std::vector<std::string> fired;
    forms::TimerId once = 0;
    once = p.SetTimer(50, [&] {
        fired.push_back("once");
        p.KillTimer(once);
        p.SetTimer(10, [&] { fired.push_back("child@" + std::to_string(p.Now())); });
    });
    p.Advance(75);
    EXPECT_EQ(fired, (std::vector<std::string>{"once", "child@60", "child@70"}));
    p.KillTimer(12345);  // unknown ids are ignored
}

TEST(HeadlessClock, ATickDoesNotReEnterItselfFromANestedLoop) {
    HeadlessPlatform p;
    int ticks = 0;
    p.SetTimer(10, [&] {
        ++ticks;
        p.Advance(100);  // a modal loop inside the tick
    });
    p.Advance(10);
    EXPECT_EQ(ticks, 1);
}

class Dialog : public forms::Form {
  public:
    explicit Dialog(forms::Platform& p) : Form(p, "Dialog") {}
    forms::CommandButton btnOK{*this, "btnOK"};
    bool accepted = false;

  protected:
    void Form_Load() override {
        btnOK.Click = [this] {
            accepted = true;
            Hide();
        };
    }
};

TEST(HeadlessModal, ATimerFiresWhileAModalFormIsUp) {
    HeadlessPlatform p;
    Dialog d(p);
    int ticks = 0;
    p.SetTimer(1000, [&] { ++ticks; });
    p.AnswerNextModal("Dialog", [&](forms::Form&) {
        p.Advance(3000);  // the user takes three seconds to answer
        d.btnOK.UserClick();
    });
    d.Show(forms::kModal);
    EXPECT_EQ(ticks, 3);
    EXPECT_TRUE(d.accepted);
    EXPECT_FALSE(d.IsModal());
}

TEST(HeadlessModal, NestedModalsUnwindInOrder) {
    HeadlessPlatform p;
    Dialog outer(p);
    forms::Form inner(p, "Inner");
    std::vector<std::string> order;
    p.AnswerNextModal("Dialog", [&](forms::Form&) {
        order.push_back("outer up");
        inner.Show(forms::kModal);
        order.push_back("inner returned");
        outer.Hide();
    });
    p.AnswerNextModal("Inner", [&](forms::Form& f) {
        order.push_back("inner up, outer modal=" + std::to_string(outer.IsModal()));
        f.Hide();
    });
    outer.Show(forms::kModal);
    EXPECT_EQ(order,
              (std::vector<std::string>{"outer up", "inner up, outer modal=1", "inner returned"}));
}

TEST(HeadlessModal, UnansweredBoxesAndFormsFailLoudlyNamingThem) {
    HeadlessPlatform p;
    EXPECT_THAT([&p] { p.MsgBox("Are you there?"); },
                ::testing::ThrowsMessage<Unanswered>(::testing::HasSubstr("Are you there?")));
    Dialog d(p);
    EXPECT_THROW(d.Show(forms::kModal), Unanswered);
    p.AnswerNextModal("Dialog", [](forms::Form&) {});
    EXPECT_THROW(d.Show(forms::kModal), Unanswered) << "a responder that leaves it open";
}

// Whatever a box is given, it quotes a screenful: the text up to the limit, then an ellipsis and
// the whole length, cut between characters.
TEST(HeadlessBoxes, ABoxQuotesAtMostAScreenfulOfItsText) {
    const std::string e = "\xc3\xa9";  // one character, two bytes
    const std::string limit(forms::Platform::kBoxTextLimit, 'x');
    const struct {
        std::string text;
        std::string shown;
    } cases[] = {
        {"short", "short"},
        {limit, limit},
        {limit + "y", limit + "\xe2\x80\xa6 (2001 characters)"},
        {std::string(10 << 20, 'z'),
         std::string(forms::Platform::kBoxTextLimit, 'z') + "\xe2\x80\xa6 (10485760 characters)"},
    };
    for (const auto& c : cases) {
        HeadlessPlatform p;
        p.AnswerNextBox(forms::mb::kResultOk);
        p.MsgBox(c.text);
        ASSERT_EQ(p.Boxes().size(), 1u);
        EXPECT_EQ(p.Boxes()[0].text, c.shown) << c.text.size() << " bytes";
    }
    std::string accents;
    for (std::size_t i = 0; i < forms::Platform::kBoxTextLimit + 1; ++i) accents += e;
    EXPECT_EQ(forms::QuotedForBox(accents, 3), e + e + e + "\xe2\x80\xa6 (2001 characters)");
}

TEST(HeadlessServices, UnhandledFailureInATimerTickEndsTheProcessWithOneAfterTheBox) {
    HeadlessPlatform p;
    p.SetTimer(10, [] { throw automation::Failure(6); });
    p.AnswerNextBox(kResultOk);
    EXPECT_THROW(p.Advance(10), ProcessEnded);
    ASSERT_EQ(p.Boxes().size(), 1u);
    EXPECT_EQ(p.Boxes()[0].text, "Run-time error '6':\n\nOverflow");
    EXPECT_EQ(p.EndedWith(), 1);
}

}  // namespace
}  // namespace kw::headless
