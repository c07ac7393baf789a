// The toolkit's message box with the product's icon.
#pragma once

#include "platform/export.h"

#include <QMessageBox>
#include <QString>

// Takes over its parent's font. Closed (not: answered by a button), it tells the runtime so by the system
// notice 111 where the application record asks for that; close() works with any set of buttons and clicks
// none. The buttons are at least as high as a fingertip, 44 pixels.
//
// clickedButton() and result() of a box that was answered before stay what they were when it is closed:
// whoever shows a box again looks at what exec() returns, 0 for one that was closed.
class PANELKIT_EXPORT HMIMessageBox : public QMessageBox
{
public:
    // What is empty is left out: no title, no text, no such button.
    HMIMessageBox(QWidget *parent, const QString &title, const QString &text, const QString &okText,
                  const QString &cancelText);

    // Add the standard button if the box has none yet, and name it. An empty text leaves its name alone.
    void addOKButton(const QString &text);
    void addCancelButton(const QString &text);

protected:
    void closeEvent(QCloseEvent *event) override;
};
