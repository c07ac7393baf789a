// What pages are made of.
#pragma once

#include "simulator/window/panelstyle.h"

#include <QComboBox>
#include <QLabel>
#include <QList>

class QPushButton;

namespace panelkit::simulator {

// A label for sentences: plain text over as many lines as its width makes, never wider than its place.
class SentenceLabel : public QLabel
{
public:
    SentenceLabel(const char *objectName, Part part, QWidget *parent);

    // A sentence of another kind; an empty one takes no room.
    void say(Part part, const QString &text);
};

// A control with its caption above.
class CaptionedField : public QWidget
{
public:
    // Takes over `control`.
    CaptionedField(QWidget *control, QWidget *parent);

    // Also the name of the control for those who do not see it.
    void setCaption(const QString &caption);

private:
    QLabel *m_caption;
    QWidget *m_control;
};

// Buttons in a row of which one is pressed, the first to begin with.
class ChoiceRow : public QWidget
{
    Q_OBJECT
public:
    ChoiceRow(const QList<const char *> &objectNames, QWidget *parent);

    void setTexts(const QStringList &texts);
    int chosen() const;

Q_SIGNALS:
    void changed(); // by a finger

private:
    QList<QPushButton *> m_buttons;
};

// One of several, in a list that opens; a long one is cut in the middle.
class ChoiceBox : public QComboBox
{
public:
    ChoiceBox(const char *objectName, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};

// The path in parts between which a line may break.
QString breakablePath(QString path);

} // namespace panelkit::simulator
