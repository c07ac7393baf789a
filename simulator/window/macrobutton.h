// A button of the screen that runs an item's macros.
#pragma once

#include <QAbstractButton>

namespace panelkit::simulator {

// Large enough for a hurried finger; its name goes over several lines where it needs to. Every pressed() is
// followed by a released(), also when the button goes from the screen under the finger, and when a box comes
// before it that keeps the finger's own leaving from it.
class MacroButton : public QAbstractButton
{
    Q_OBJECT
public:
    MacroButton(const QString &name, QWidget *parent);

    void setRunning(bool isRunning); // its macro is being run

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;

private:
    void release();

    bool m_isRunning = false;
};

} // namespace panelkit::simulator
