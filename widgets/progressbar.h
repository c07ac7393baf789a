// A small dialog that shows the progress of a long operation and announces its end.
#pragma once

#include "platform/export.h"

#include <QDialog>
#include <QString>

class QLabel;
class QProgressBar;

// Frameless, on top of everything, in the middle of the panel's screen; with a parent it is a part of that
// and no window of its own. While it is active it follows the progress; the operator may hide it, and then it
// stays away until it is activated anew. The text is shown as it stands, broken into lines; the button is at
// least as high as a fingertip, 44 pixels.
class PANELKIT_EXPORT ProgressBar : public QDialog
{
    Q_OBJECT
public:
    explicit ProgressBar(QWidget *parent = nullptr);

    // Sets the bar to `value` of `maximum`; `activate` makes the dialog active. An active dialog is shown
    // with `text` behind its label (an empty text leaves the label as it is), or, once `value` has reached
    // `maximum`, is hidden, and the runtime is asked by a UMessageBoxEvent to say so: with every such call,
    // since the dialog stays active. `close` only hides the dialog and leaves everything else as it is.
    void UpdateProgress(int value, int maximum, bool activate, QString text, bool close);

public Q_SLOTS:
    void OnCancel(); // hides the dialog and ends its being active

private:
    void buildLayout();

    QLabel *m_label;
    QProgressBar *m_progressBar;
    qint32 m_maximum;
    qint32 m_value;
    bool m_active;
};
