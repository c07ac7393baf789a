#include "simulator/window/keypad.h"

#include "simulator/window/panelstyle.h"
#include "widgets/mylineedit.h"

#include <QCoreApplication>
#include <QDragMoveEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMimeData>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <QVariant>

namespace panelkit::simulator {

namespace {

constexpr int gap = 3;         // between keys
constexpr int widestKey = 110; // pixels
constexpr int airBelowField = 6;
constexpr int mostColumns = 14; // of any layout

bool takesNumbers(const MyLineEdit &field)
{
    return field.inputMethodHints() & (Qt::ImhDigitsOnly | Qt::ImhFormattedNumbersOnly |
                                       Qt::ImhPreferNumbers | Qt::ImhDialableCharactersOnly);
}

// All of the field; the toolkit's own way is content with the caret's place.
void scrollTo(QScrollArea &area, const MyLineEdit &field)
{
    const QRect place(field.mapTo(area.widget(), QPoint(0, 0)), field.size());
    area.ensureVisible(place.left(), place.bottom(), 0, 0);
    area.ensureVisible(place.left(), place.top(), 0, 0);
}

// A line edit shows its caret when it gains the focus, which a MyLineEdit leaves out, and as long as
// something is dragged over it.
void showCaret(MyLineEdit &field)
{
    if (field.isReadOnly())
        return;
    const int cursor = field.cursorPosition();
    const QPoint place = field.inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QMimeData text;
    text.setText(QString());
    QDragMoveEvent over(place, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    field.event(&over); // not sent: the application would look for a real drag
    field.setCursorPosition(cursor);
    // Which of the caret's blinks it is in is decided anew, or it would be the dark one for ever.
    field.setReadOnly(true);
    field.setReadOnly(false);
}

void hideCaret(MyLineEdit &field)
{
    QDragLeaveEvent left;
    field.event(&left);
}

} // namespace

Keypad::Keypad(QWidget *window, QWidget *content)
    : QWidget(window),
      m_window(window),
      m_content(content),
      m_note(new QLabel(this)),
      m_grid(new QGridLayout)
{
    setObjectName(QStringLiteral("keypad"));
    m_note->setObjectName(QStringLiteral("note"));
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_note->setContentsMargins(2 * gap, 0, 2 * gap, 0);
    m_grid->setContentsMargins(gap, gap, gap, gap);
    m_grid->setSpacing(gap);
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_note);
    column->addLayout(m_grid, 1);
    hide();
}

void Keypad::serve(MyLineEdit *field)
{
    connect(field, &MyLineEdit::focusIn, this, [this, field] { open(field); });
    connect(field, &MyLineEdit::focusOut, this, [this, field] {
        if (field == m_field)
            close();
    });
    connect(field, &QObject::destroyed, this, [this, field] {
        if (field != m_field)
            return;
        m_field = nullptr;
        close();
    });
}

void Keypad::serveAllIn(QWidget *page)
{
    for (MyLineEdit *field : page->findChildren<MyLineEdit *>())
        serve(field);
}

void Keypad::open(MyLineEdit *field)
{
    if (m_field != nullptr)
        close();
    m_field = field;
    m_isShifted = false;
    const QSize screen = m_window->size();
    const KeypadLayout layout = takesNumbers(*field) ? digitKeys() : letterKeys(screen);
    build(layout);
    m_note->ensurePolished();
    const int lines = field->property(noteProperty).isValid() ? noteLines(screen) : 0;
    const int noteHeight = lines > 0 ? lines * m_note->fontMetrics().lineSpacing() + gap : 0;
    m_note->setFixedHeight(noteHeight);
    const int width = qMin(screen.width(), layout.columns * (widestKey + gap) + gap);
    const int height = layout.rows * keyHeight(layout, screen, noteHeight) + noteHeight;
    setGeometry((screen.width() - width) / 2, screen.height() - height, width, height);
    showNote();
    for (QWidget *parent = field->parentWidget(); parent != m_content; parent = parent->parentWidget())
        if (auto *const area = qobject_cast<QScrollArea *>(parent))
            scrollTo(*area, *field);
    makeRoomFor(*field);
    watch(true);
    showCaret(*field);
    show();
    raise();
}

void Keypad::close()
{
    if (m_field != nullptr) {
        watch(false);
        hideCaret(*m_field);
    }
    m_field = nullptr;
    m_content->move(0, 0);
    hide();
}

void Keypad::build(const KeypadLayout &layout)
{
    for (QPushButton *button : m_buttons) {
        button->hide();
        button->deleteLater(); // one of them may be the sender
    }
    m_buttons.clear();
    m_keys = layout.keys;
    for (int column = 0; column < mostColumns; ++column)
        m_grid->setColumnStretch(column, column < layout.columns ? 1 : 0);
    for (const Key &key : m_keys) {
        auto *button = new QPushButton(this);
        button->setFocusPolicy(Qt::NoFocus); // the field keeps it
        button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
        button->setAutoRepeat(key.action == Key::Action::Delete);
        button->setCheckable(key.action == Key::Action::Shift);
        if (key.action == Key::Action::Enter)
            setPart(button, Part::Primary);
        else if (key.action != Key::Action::Type || key.text == QLatin1String(" "))
            button->setProperty("part", QVariant(QStringLiteral("word")));
        connect(button, &QPushButton::clicked, this, [this, key] { press(key); });
        m_grid->addWidget(button, key.row, key.column, 1, key.span);
        m_buttons.push_back(button);
        button->show();
    }
    label();
}

// The field in view above the keys, and the top of the window where it can be.
void Keypad::makeRoomFor(const MyLineEdit &field)
{
    m_content->move(0, 0);
    const int top = field.mapTo(m_window, QPoint(0, 0)).y();
    const int hidden = top + field.height() + airBelowField - y();
    m_content->move(0, -qBound(0, hidden, qMax(0, top)));
}

// What moves the field: itself, and whatever it stands on up to the content.
void Keypad::watch(bool isWatched)
{
    for (QWidget *widget = m_field; widget != m_content; widget = widget->parentWidget())
        if (isWatched)
            widget->installEventFilter(this);
        else
            widget->removeEventFilter(this);
}

bool Keypad::eventFilter(QObject *watched, QEvent *event)
{
    if (m_field != nullptr) {
        if (event->type() == QEvent::Move || event->type() == QEvent::Resize)
            makeRoomFor(*m_field);
        else if (event->type() == QEvent::DynamicPropertyChange && watched == m_field)
            showNote();
    }
    return QWidget::eventFilter(watched, event);
}

void Keypad::showNote()
{
    const QString note = m_field->property(noteProperty).toString();
    const int lines = m_note->height() / m_note->fontMetrics().lineSpacing();
    // Lines that are broken between words end before the edge.
    const int room = lines < 2 ? width() - 6 * gap : lines * width() * 4 / 5;
    m_note->setText(m_note->fontMetrics().elidedText(note, Qt::ElideRight, room));
}

void Keypad::press(const Key &key)
{
    if (m_field == nullptr)
        return;
    switch (key.action) {
    case Key::Action::Type:
        send(0, m_isShifted ? key.text.toUpper() : key.text);
        break;
    case Key::Action::Shift:
        m_isShifted = !m_isShifted;
        label();
        break;
    case Key::Action::Delete:
        send(Qt::Key_Backspace, QString());
        break;
    case Key::Action::Clear:
        m_field->selectAll();
        send(Qt::Key_Delete, QString());
        break;
    case Key::Action::Enter:
        send(Qt::Key_Return, QStringLiteral("\r"));
        if (m_field != nullptr)
            m_field->clearFocus();
        break;
    }
}

void Keypad::send(int keyCode, const QString &text)
{
    const QPointer<MyLineEdit> field = m_field;
    QKeyEvent down(QEvent::KeyPress, keyCode, Qt::NoModifier, text);
    QCoreApplication::sendEvent(field, &down);
    QKeyEvent up(QEvent::KeyRelease, keyCode, Qt::NoModifier, text);
    if (field != nullptr)
        QCoreApplication::sendEvent(field, &up);
}

void Keypad::label()
{
    for (std::size_t i = 0; i < m_keys.size(); ++i) {
        QPushButton *button = m_buttons[i];
        switch (m_keys[i].action) {
        case Key::Action::Type:
            button->setText(m_keys[i].text == QLatin1String(" ") ? tr("Space")
                            : m_isShifted                        ? m_keys[i].text.toUpper()
                                                                 : m_keys[i].text);
            break;
        case Key::Action::Shift:
            button->setText(tr("ABC"));
            button->setChecked(m_isShifted);
            break;
        case Key::Action::Delete:
            button->setText(tr("Delete"));
            break;
        case Key::Action::Clear:
            button->setText(tr("Clear"));
            break;
        case Key::Action::Enter:
            button->setText(tr("Enter"));
            break;
        }
    }
}

QPushButton *Keypad::keyFor(const QString &text) const
{
    for (std::size_t i = 0; i < m_keys.size(); ++i)
        if (m_keys[i].action == Key::Action::Type && m_keys[i].text == text)
            return m_buttons[i];
    return nullptr;
}

QPushButton *Keypad::keyFor(Key::Action action) const
{
    for (std::size_t i = 0; i < m_keys.size(); ++i)
        if (m_keys[i].action == action)
            return m_buttons[i];
    return nullptr;
}

void Keypad::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), colour::bar);
}

// What hits the keypad between its keys does not reach the page behind it.
void Keypad::mousePressEvent(QMouseEvent *event)
{
    event->accept();
}

void Keypad::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        label();
    QWidget::changeEvent(event);
}

} // namespace panelkit::simulator
