#include "simulator/window/addresspage.h"

#include "simulator/host/session.h"
#include "simulator/window/fingerscrollarea.h"
#include "simulator/window/keypad.h"
#include "simulator/window/pageparts.h"
#include "simulator/window/twocolumns.h"
#include "widgets/mylineedit.h"
#include "widgets/touch.h"

#include <QFrame>
#include <QGridLayout>

namespace panelkit::simulator {

namespace {

enum Access
{
    Word,
    Bit
};

// The block as it is typed for a link: with the link's number and a station where they are needed.
QString typicalBlock(const LinkDefinition &link)
{
    QString block;
    if (link.number != 1)
        block += QString::number(link.number) + QLatin1Char('/');
    if (link.manyStations)
        block += QString::number(link.station) + QLatin1Char('#');
    return block + (link.blocks.contains(QStringLiteral("4x")) ? QStringLiteral("4x") : link.blocks.value(0));
}

} // namespace

AddressPage::AddressPage(Session &session, QWidget *parent)
    : Page(parent),
      m_session(session),
      m_checker(session),
      m_columns(new TwoColumns(1, 1, nullptr))
{
    buildInputs();
    buildVerdict();
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->addWidget(new FingerScrollArea(m_columns, this));

    for (const LinkDefinition &link : session.project().links)
        m_link->addItem(link.name);
    m_link->addItem(QString::fromLatin1(internalStorageName));
    connect(m_link, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &AddressPage::offerLink);
    for (MyLineEdit *edit : {m_block, m_number, m_length})
        connect(edit, &QLineEdit::textChanged, this, &AddressPage::check);
    m_length->setInputMethodHints(Qt::ImhDigitsOnly);
    connect(m_access, &ChoiceRow::changed, this, &AddressPage::check);
    offerLink(m_link->currentIndex());
    retranslate();
}

MyLineEdit *AddressPage::makeEdit(const char *objectName)
{
    auto *const edit = new MyLineEdit(m_columns);
    edit->setObjectName(QLatin1String(objectName));
    edit->setMinimumWidth(fingerHeight);
    edit->setMaxLength(40);
    return edit;
}

void AddressPage::buildInputs()
{
    m_link = new ChoiceBox("link", m_columns);
    m_block = makeEdit("block");
    m_number = makeEdit("number");
    m_length = makeEdit("length");
    m_length->setText(QStringLiteral("1"));
    m_access = new ChoiceRow({"word", "bit"}, m_columns);

    const QList<QWidget *> controls = {m_link, m_block, m_number, m_access, m_length};
    for (QWidget *control : controls)
        m_fields << new CaptionedField(control, m_columns);
    auto *const grid = new QGridLayout;
    grid->setSpacing(4);
    for (int column = 0; column < 6; ++column)
        grid->setColumnStretch(column, 1);
    grid->addWidget(m_fields.at(0), 0, 0, 1, 6);
    grid->addWidget(m_fields.at(1), 1, 0, 1, 3);
    grid->addWidget(m_fields.at(2), 1, 3, 1, 3);
    grid->addWidget(m_fields.at(3), 2, 0, 1, 4);
    grid->addWidget(m_fields.at(4), 2, 4, 1, 2);
    m_columns->first()->addLayout(grid);
}

void AddressPage::buildVerdict()
{
    auto *const card = new QFrame(m_columns);
    setPart(card, Part::Card);
    auto *const column = new QVBoxLayout(card);
    column->setContentsMargins(10, 4, 10, 4);
    column->setSpacing(2);
    m_verdict = new SentenceLabel("verdict", Part::Hint, card);
    m_reason = new SentenceLabel("reason", Part::Hint, card);
    m_resolved = new QWidget(card);
    m_rows = new QGridLayout(m_resolved);
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->setVerticalSpacing(2);
    m_rows->setColumnStretch(1, 1);
    for (const char *name : {"shown", "index", "resolvedLink", "station"}) {
        auto *const caption = new QLabel(m_resolved);
        setPart(caption, Part::Caption);
        auto *const value = new SentenceLabel(name, Part::Heading, m_resolved);
        value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        const int row = static_cast<int>(m_captions.size());
        m_rows->addWidget(caption, row, 0);
        m_rows->addWidget(value, row, 1);
        m_captions << caption;
        m_values << value;
    }
    column->addWidget(m_verdict);
    column->addWidget(m_reason);
    column->addWidget(m_resolved);
    m_columns->second()->addWidget(card);
}

QString AddressPage::title() const
{
    return tr("Address");
}

void AddressPage::retranslate()
{
    const QString captions[] = {tr("Link"), tr("Block"), tr("Number"), tr("Access"), tr("Length")};
    for (int i = 0; i < m_fields.size(); ++i)
        m_fields.at(i)->setCaption(captions[i]);
    m_access->setTexts({tr("Word"), tr("Bit")});
    const QString resolved[] = {tr("On screens"), tr("Index"), tr("Link"), tr("Station")};
    for (int i = 0; i < m_captions.size(); ++i) {
        m_captions.at(i)->setText(resolved[i]);
        m_values.at(i)->setAccessibleName(resolved[i]);
    }
    check();
}

// It is the block that says by its prefix on which link it is: the author starts from one that fits.
void AddressPage::offerLink(int index)
{
    const std::vector<LinkDefinition> &links = m_session.project().links;
    const bool isInternal = index < 0 || static_cast<std::size_t>(index) >= links.size();
    m_block->setText(isInternal ? QStringLiteral("LW")
                                : typicalBlock(links[static_cast<std::size_t>(index)]));
    check();
}

TypedAddress AddressPage::typed() const
{
    TypedAddress address;
    address.linkName = m_link->currentText();
    address.block = m_block->text();
    address.number = m_number->text();
    address.isBit = m_access->chosen() == Bit;
    address.length = m_length->text().toInt();
    return address;
}

void AddressPage::check()
{
    bool isLength = false;
    const int length = m_length->text().toInt(&isLength);
    if (m_block->text().isEmpty() || m_number->text().isEmpty()) {
        m_verdict->say(Part::Hint, tr("Type a block and a number."));
        m_reason->say(Part::Hint,
                      tr("The number of the link stands before the block with \"/\", a station with "
                         "\"#\": 2/3#4x."));
        m_resolved->hide();
        mark(Part::Hint, Part::Hint, Part::Hint);
    } else if (!isLength || length < 1) {
        m_verdict->say(Part::Refusal, tr("Refused"));
        m_reason->say(Part::Refusal, tr("The length is a whole number from 1 on."));
        m_resolved->hide();
        mark(Part::Hint, Part::Hint, Part::Refusal);
    } else {
        show(m_checker.check(typed()));
    }
    const bool isRefused = m_verdict->property("part").toString() == QLatin1String("refusal");
    for (MyLineEdit *edit : {m_block, m_number, m_length})
        edit->setProperty(Keypad::noteProperty, (isRefused ? m_reason : m_verdict)->text());
}

// The fields tell the verdict too, by their looks and above the keys of the keypad, which stands on it.
void AddressPage::mark(Part block, Part number, Part length)
{
    setPart(m_block, block);
    setPart(m_number, number);
    setPart(m_length, length);
}

void AddressPage::show(const CheckedAddress &checked)
{
    const bool isValid = checked.verdict.code == 0;
    if (!checked.passes)
        m_verdict->say(Part::Refusal, tr("Refused"));
    else if (isValid)
        m_verdict->say(Part::Notice, tr("Valid"));
    else
        m_verdict->say(Part::Hint, tr("Passes unchecked"));
    m_reason->say(checked.passes ? Part::Hint : Part::Refusal, checked.explanation);
    m_resolved->setVisible(isValid);
    const AddressVerdict::Text place = checked.verdict.text;
    const Part unlessPlaced = isValid ? Part::Notice : checked.passes ? Part::Hint : Part::Refusal;
    mark(place == AddressVerdict::NumberText ? Part::Hint : unlessPlaced,
         place == AddressVerdict::BlockText ? Part::Hint : unlessPlaced, Part::Hint);
    if (!isValid)
        return;
    QString link;
    for (const auto &property : checked.written)
        if (property.first == QLatin1String("Link"))
            link = property.second;
    const QString texts[] = {checked.shown, QString::number(checked.index), link,
                             checked.station == -1 ? tr("none") : QString::number(checked.station)};
    for (int i = 0; i < m_values.size(); ++i)
        m_values.at(i)->setText(texts[i]);
}

} // namespace panelkit::simulator
