// What the panel tells of itself and of its links.
#pragma once

#include "simulator/host/devicefigures.h"
#include "simulator/window/page.h"

#include <QElapsedTimer>

class QLabel;

namespace panelkit::simulator {

class SentenceLabel;
class Session;

// Its figures are taken once a second while it is in front.
class DevicePage final : public Page
{
    Q_OBJECT
public:
    DevicePage(Session &session, QWidget *parent); // `session` must live longer

    QString title() const override;
    void refresh() override;

protected:
    void retranslate() override;

private:
    struct Row
    {
        QLabel *caption;
        QLabel *value;
    };
    struct Link
    {
        int number;
        QLabel *name;
        SentenceLabel *state;
        SentenceLabel *parameters;
    };

    QWidget *buildFigures();
    QWidget *buildLink(int number);
    void takeFigures();
    void showFigures();
    void showLinks();

    Session &m_session;
    cpu_info m_processor = {};
    DeviceFigures m_figures;
    bool m_hasLoad = false; // which takes two samples
    QElapsedTimer m_taken;  // since the figures were
    QList<Row> m_rows;
    SentenceLabel *m_memoryNote = nullptr;
    QLabel *m_linksHeading = nullptr;
    QList<Link> m_links;
};

} // namespace panelkit::simulator
