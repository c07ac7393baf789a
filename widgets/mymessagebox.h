// A notice with one button that closes itself.
#pragma once

#include "platform/export.h"

#include <QDialog>
#include <QTimer>

class QLabel;

// It hides when its time is over or its button is clicked, and may be shown again; each showing gets the full
// time. Hiding neither closes nor deletes it and sets no result. Without a call of setText it hides right
// after it is shown. The button is at least as high as a fingertip, 44 pixels.
class PANELKIT_EXPORT MyMessagebox : public QDialog
{
    Q_OBJECT
public:
    explicit MyMessagebox(QString text);

    // Sets the text, broken into lines where it is more than 300 pixels wide, and the time. A visible box
    // begins its time anew. Negative times count as 0, times beyond 24 days as that.
    void setText(QString text, int seconds);

public Q_SLOTS:
    void OnCancel();

protected:
    void showEvent(QShowEvent *event) override;

private:
    QLabel *m_label;
    QTimer m_timer;
};
