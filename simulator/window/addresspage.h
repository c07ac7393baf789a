// Checks an address while its author types it.
#pragma once

#include "simulator/host/projectchecker.h"
#include "simulator/window/page.h"
#include "simulator/window/panelstyle.h"

class MyLineEdit;
class QGridLayout;
class QLabel;

namespace panelkit::simulator {

class CaptionedField;
class ChoiceBox;
class ChoiceRow;
class SentenceLabel;
class Session;
class TwoColumns;

class AddressPage final : public Page
{
    Q_OBJECT
public:
    AddressPage(Session &session, QWidget *parent); // `session` must live longer

    QString title() const override;

protected:
    void retranslate() override;

private:
    MyLineEdit *makeEdit(const char *objectName);
    void buildInputs();
    void buildVerdict();
    void offerLink(int index);
    TypedAddress typed() const;
    void check();
    void show(const CheckedAddress &checked);
    void mark(Part block, Part number, Part length);

    Session &m_session;
    ProjectChecker m_checker;
    TwoColumns *m_columns;

    ChoiceBox *m_link;
    MyLineEdit *m_block;
    MyLineEdit *m_number;
    MyLineEdit *m_length;
    ChoiceRow *m_access;
    QList<CaptionedField *> m_fields; // link, block, number, access, length

    SentenceLabel *m_verdict;
    SentenceLabel *m_reason;
    QWidget *m_resolved;
    QGridLayout *m_rows;
    QList<QLabel *> m_captions; // of what a valid address resolves to
    QList<QLabel *> m_values;
};

} // namespace panelkit::simulator
