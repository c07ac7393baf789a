#include "simulator/window/pageparts.h"

#include "widgets/touch.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPushButton>
#include <QStylePainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace panelkit::simulator {

SentenceLabel::SentenceLabel(const char *objectName, Part part, QWidget *parent) : QLabel(parent)
{
    setObjectName(QLatin1String(objectName));
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setMinimumWidth(1);
    setPart(this, part);
}

void SentenceLabel::say(Part part, const QString &text)
{
    setPart(this, part);
    setText(text);
    setVisible(!text.isEmpty());
}

CaptionedField::CaptionedField(QWidget *control, QWidget *parent)
    : QWidget(parent),
      m_caption(new QLabel(this)),
      m_control(control)
{
    setPart(m_caption, Part::Caption);
    m_caption->setMinimumWidth(1);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(m_caption);
    layout->addWidget(control);
}

void CaptionedField::setCaption(const QString &caption)
{
    m_caption->setText(caption);
    m_control->setAccessibleName(caption);
}

ChoiceRow::ChoiceRow(const QList<const char *> &objectNames, QWidget *parent) : QWidget(parent)
{
    auto *const group = new QButtonGroup(this);
    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    for (const char *objectName : objectNames) {
        auto *const button = new QPushButton(this);
        button->setObjectName(QLatin1String(objectName));
        button->setCheckable(true);
        button->setMinimumHeight(fingerHeight);
        button->setMinimumWidth(fingerHeight);
        button->setStyleSheet(
            QStringLiteral("padding: 2px; min-height: 38px;")); // a narrow row, as high as a field
        group->addButton(button);
        layout->addWidget(button, 1);
        connect(button, &QPushButton::clicked, this, &ChoiceRow::changed);
        m_buttons << button;
    }
    m_buttons.first()->setChecked(true);
}

void ChoiceRow::setTexts(const QStringList &texts)
{
    for (int i = 0; i < m_buttons.size(); ++i)
        m_buttons.at(i)->setText(texts.value(i));
}

int ChoiceRow::chosen() const
{
    for (int i = 0; i < m_buttons.size(); ++i)
        if (m_buttons.at(i)->isChecked())
            return i;
    return 0;
}

ChoiceBox::ChoiceBox(const char *objectName, QWidget *parent) : QComboBox(parent)
{
    setObjectName(QLatin1String(objectName));
    setMinimumHeight(fingerHeight);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(4);
    setItemDelegate(new QStyledItemDelegate(this)); // which lets the style sheet make rows for a finger
}

void ChoiceBox::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QRect text =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    option.currentText = fontMetrics().elidedText(option.currentText, Qt::ElideMiddle, text.width());
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

QString breakablePath(QString path)
{
    const QChar zeroWidthSpace(0x200b);
    return path.replace(QLatin1Char('/'), QString(QLatin1Char('/')) + zeroWidthSpace);
}

} // namespace panelkit::simulator
