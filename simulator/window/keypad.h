// The on-screen keypad of the panel.
#pragma once

#include "simulator/window/keypadlayout.h"
#include "widgets/mylineedit.h"

#include <QWidget>

class QGridLayout;
class QLabel;
class QPushButton;

namespace panelkit::simulator {

// Comes up at the bottom of its window when a field that it serves gains the focus, and goes when the field
// loses it. What else the window shows is moved up as far as it takes for the field to stay in view, also
// when the page moves it later. The keys reach the field as those of a keyboard do, so that whatever it
// allows or forbids holds. While it serves a field, the keypad shows the field's caret, which a MyLineEdit
// does not.
//
// A field with the property keypadNote has that text shown above the keys, as it is at the moment: what the
// page says of the field may lie behind them.
class Keypad : public QWidget
{
    Q_OBJECT
public:
    // `content` is the child of `window` that is moved.
    Keypad(QWidget *window, QWidget *content);

    // Serves `field` from now on: with digits only where its inputMethodHints() ask for numbers.
    void serve(MyLineEdit *field);
    void serveAllIn(QWidget *page);

    static constexpr const char *noteProperty = "keypadNote";

    MyLineEdit *field() const { return m_field; } // null while the keypad is hidden

    // The key that types `text` in lower case, or the one of that action; null when it has none.
    QPushButton *keyFor(const QString &text) const;
    QPushButton *keyFor(Key::Action action) const;

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void open(MyLineEdit *field);
    void close();
    void build(const KeypadLayout &layout);
    void press(const Key &key);
    void send(int keyCode, const QString &text);
    void label();
    void showNote();
    void makeRoomFor(const MyLineEdit &field);
    void watch(bool isWatched);

    QWidget *m_window;
    QWidget *m_content;
    MyLineEdit *m_field = nullptr; // forgotten when it goes
    QLabel *m_note;
    QGridLayout *m_grid;
    std::vector<Key> m_keys;
    std::vector<QPushButton *> m_buttons; // one for each key
    bool m_isShifted = false;
};

} // namespace panelkit::simulator
