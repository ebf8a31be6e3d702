#pragma once

#include <functional>

#include <QFrame>
#include <QLabel>
#include <QString>
#include <QWidget>

#include "platform/forms/control.h"

namespace kw::qt {

// A raised panel with its caption in the middle; the controls it contains are its children.
class PanelWidget : public QFrame {
    Q_OBJECT
  public:
    explicit PanelWidget(QWidget* parent);
    void SetCaption(const QString& caption);
    const QString& Caption() const { return caption_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QString caption_;
};

// A label or picture on the skin. It carries what assistive technology is told about the
// control: a button takes focus and draws a focus frame on the skin, a light stays in reach
// while out (it draws nothing then), a decorative one is left out of the window's children.
class SkinLabel : public QLabel {
    Q_OBJECT
  public:
    explicit SkinLabel(QWidget* parent);

    forms::AccessRole Role() const { return role_; }
    void SetRole(forms::AccessRole role);
    // A light: whether it is on.
    bool Lit() const { return lit_; }
    void SetLit(bool lit);
    // What pressing it does, for the keys and for assistive technology.
    void SetPress(std::function<void()> press) { press_ = std::move(press); }
    // Presses it once the event loop is back: an assistive technology waits for the answer.
    void Press();
    // A status line: tells a screen reader its new text, which it speaks without the focus.
    void Announce(const QString& text);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    forms::AccessRole role_ = forms::AccessRole::Automatic;
    bool lit_ = true;
    std::function<void()> press_;
    QWidget* announcement_ = nullptr;
};

// What a status line says, as a notification inside it: screen readers speak a notification
// each time it appears, where they keep quiet about a change of text away from the focus.
class Announcement : public QWidget {
    Q_OBJECT
  public:
    explicit Announcement(QWidget* parent);
};

// Whether a widget says nothing to assistive technology.
bool IsDecorative(const QWidget* widget);

}  // namespace kw::qt
