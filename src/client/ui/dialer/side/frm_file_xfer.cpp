#include "client/ui/dialer/side/frm_file_xfer.h"

#include <algorithm>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/utilities.h"
#include "client/ui/dialer/shell/faces.h"
#include "platform/automation/safe_array.h"

namespace kw::dialer {

using automation::Variant;

frmFileXfer::frmFileXfer(Application& app) : Form(app.Platform(), "frmFileXfer"), app_(app) {
    namespace at = layout::filexfer;
    SetCaption("Call Home File Transfer");
    // A plain window the user can move aside while the call goes on, in the middle of the screen.
    SetBorderStyle(forms::border_style::kFixedSingle);
    const forms::Platform& platform = app.Platform();
    Move(std::max(0, (platform.SystemMetric(forms::metric::kCxScreen) - at::kWidth) / 2),
         std::max(0, (platform.SystemMetric(forms::metric::kCyScreen) - at::kHeight) / 2),
         at::kWidth, at::kHeight);
    Label1.SetCaption("Retrieving File:");
    Label2.SetCaption("Name:");
    Label5.SetCaption("Size:");
    Label3.SetCaption("Estimated Time Left:");
    btnCancel.SetCaption("Cancel");
    Timer1.SetInterval(1000);
    Timer1.SetTimerEnabled(false);
    face::Place(Label1, at::Label1);
    face::Place(lblOneOf, at::lblOneOf);
    face::Place(Label2, at::Label2);
    face::Place(lblFileName, at::lblFileName);
    face::Place(Label5, at::Label5);
    face::Place(lblFileSize, at::lblFileSize);
    face::Place(pbXferProgress, at::pbXferProgress);
    face::Place(lblPercent, at::lblPercent);
    face::Place(lblBytesCopied, at::lblBytesCopied);
    face::Place(lblXferRate, at::lblXferRate);
    face::Place(Label3, at::Label3);
    face::Place(lblTimeLeft, at::lblTimeLeft);
    face::Place(btnCancel, at::btnCancel);
    btnCancel.Click = [this] { btnCancel_Click(); };
    Timer1.Tick = [this] { Timer1_Timer(); };
}

void frmFileXfer::Form_Load() {
    lblFileName.SetCaption("");
    lblBytesCopied.SetCaption("");
    lblTimeLeft.SetCaption("");
    pbXferProgress.SetValue(0);
    Timer1.SetTimerEnabled(false);
}

void frmFileXfer::updateInfo(const Variant& transfer) {
    const automation::SafeArray& a = transfer.ToArray();
    if (!updateStarted_) {
        updateStarted_ = true;
    }
    xferElement6 = a.Get(6).ToString();
    lblTimeLeft.SetCaption(a.Get(5).ToString());
    lblOneOf.SetCaption(a.Get(1).ToString() + " of " + a.Get(2).ToString());
    const std::string path = a.Get(0).ToString();
    lblFileName.SetCaption(FileNameFromPath(path));
    lblFileName.SetToolTipText(path);
    lblBytesCopied.SetCaption("(" + a.Get(3).ToString() + " bytes copied)");
    const float percent = a.Get(7).ToSingle();
    pbXferProgress.SetValue(percent);
    lblPercent.SetCaption(a.Get(7).ToString() + "%");
    lblXferRate.SetCaption(a.Get(8).ToString());
    lblFileSize.SetCaption(a.Get(4).ToString() + " bytes");
    // Only the end of the last file takes the window away; a file done among others keeps it.
    if (percent == 100.0F && a.Get(1).ToString() == a.Get(2).ToString()) {
        Hide();
    }
}

void frmFileXfer::btnCancel_Click() {
    // The engine's next report, or its silence, says what became of the transfer.
    app_.EngineObject->CancelFileTransfer();
}

void frmFileXfer::Timer1_Timer() {
    if (secondsLeft > 0) {
        --secondsLeft;
    } else if (minutesLeft > 0 || hoursLeft > 0) {
        secondsLeft = 59;
        if (minutesLeft > 0) {
            --minutesLeft;
        } else {
            minutesLeft = 59;
            --hoursLeft;
        }
    }
    const std::string minutesAndSeconds =
        std::to_string(minutesLeft) + " minutes " + std::to_string(secondsLeft) + " seconds";
    if (hoursLeft > 0) {
        lblTimeLeft.SetCaption(std::to_string(hoursLeft) + " hours " + minutesAndSeconds);
    } else if (hoursLeft == 0) {
        lblTimeLeft.SetCaption(minutesAndSeconds);
    }
}

}  // namespace kw::dialer
