// Every row of data/values.tsv through getValueToQString; the file says what its columns are.

#include "register/numformat.h"

#include "register/registervaluechange.h"
#include "tests/support/panelfixture.h"

#include <QFile>
#include <QMap>
#include <QSet>

namespace {

// A number, or a name as its place among `names`, the first of which is `first`.
int parsed(const QString &text, const QStringList &names, int first, bool *ok)
{
    const auto place = names.indexOf(text);
    *ok = place >= 0;
    return *ok ? static_cast<int>(place) + first : text.toInt(ok);
}

struct ValueRow
{
    QString name;
    QVector<quint16> words;
    int wordCount = 0;
    int totalDigits = 0;
    int decimals = 0;
    NUM_DATA_TYPE type = NUM_BIT;
    NUM_DATA_VIEW_TYPE view = NUM_VIEW_DEC;
    QString text;
};

bool parseRow(const QString &line, ValueRow &row)
{
    static const QStringList types =
        QStringLiteral("BIT UINT16 UINT32 INT16 INT32 BCD16 BCD32 FLOAT32 STRING").split(QLatin1Char(' '));
    static const QStringList views = QStringLiteral("DEC HEX OCT BIN").split(QLatin1Char(' '));
    const QStringList columns = line.split(QLatin1Char('\t'));
    if (columns.size() != 8)
        return false;
    row.name = columns[0];
    bool good = true;
    const QStringList words = columns[1].split(QLatin1Char(' '));
    for (const QString &word : words) {
        bool ok = false;
        row.words << word.toUShort(&ok, 16);
        good = good && ok && word.size() == 4;
    }
    bool ok[5] = {};
    row.wordCount = columns[2].toInt(&ok[0]);
    row.totalDigits = columns[3].toInt(&ok[1]);
    row.decimals = columns[4].toInt(&ok[2]);
    row.type = static_cast<NUM_DATA_TYPE>(parsed(columns[5], types, NUM_BIT, &ok[3]));
    row.view = static_cast<NUM_DATA_VIEW_TYPE>(parsed(columns[6], views, NUM_VIEW_DEC, &ok[4]));
    row.text = columns[7];
    return good && ok[0] && ok[1] && ok[2] && ok[3] && ok[4];
}

} // namespace

class ValueTable : public panelkit::testing::PanelFixture
{
};

TEST_F(ValueTable, ShowsEveryRowAsItSays)
{
    QFile file(QStringLiteral(PANELKIT_TEST_DATA "/values.tsv"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    QSet<QString> names;
    for (const QString &line : lines) {
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        SCOPED_TRACE(line.toStdString());
        ValueRow row;
        ASSERT_TRUE(parseRow(line, row));
        EXPECT_FALSE(names.contains(row.name)) << "another row has this name";
        names.insert(row.name);

        comm.words = row.words;
        QString out = QStringLiteral("before");
        EXPECT_TRUE(
            getValueToQString({}, row.wordCount, row.totalDigits, row.decimals, row.type, row.view, out));
        EXPECT_EQ(out.toStdString(), row.text.toStdString());
    }
    EXPECT_GE(names.size(), 300);
}
