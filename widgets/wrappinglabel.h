// A label that shows all of its text, whatever it says.
#pragma once

#include <QLabel>

namespace panelkit {

// Plain text over as many lines as its width asks for. Lines break between words and, unlike a plain label's,
// also within one that is wider than the label, as names of files are.
class WrappingLabel : public QLabel
{
public:
    explicit WrappingLabel(QWidget *parent);
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace panelkit
