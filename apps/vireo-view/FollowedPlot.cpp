#include "apps/vireo-view/FollowedPlot.h"

#include <numeric>
#include <utility>

#include "apps/vireo-view/Exhibits.h"

namespace vireo_view {

FollowedPlot::FollowedPlot(const std::filesystem::path& file, std::string name, ColumnChoice choice)
    : m_Path(file)
    , m_Name(std::move(name))
    , m_Choice(std::move(choice))
    , m_File(file)
{}

FollowedPlot::News FollowedPlot::poll()
{
    News news;
    const std::optional<Table> before = m_Plot ? std::optional(m_Parser.getTable()) : std::nullopt;
    tell(m_File.poll([this](std::string_view line, std::size_t number) { m_Parser.parseLine(line, number); }), news);
    if (m_Parser.getTable().numRows > 0 && plan(news))
        news.rows = takeRows();
    if (before && m_Plot)
        for (const std::string& remark : m_Parser.getTable().remarks(&*before))
            news.lines.push_back(printableName(m_Path) + ": " + remark);
    return news;
}

void FollowedPlot::tell(FollowedFile::Event event, News& news)
{
    const auto say = [&](const std::string& text) { news.lines.push_back(printableName(m_Path) + ": " + text); };
    switch (event) {
    case FollowedFile::Event::NONE: return;
    case FollowedFile::Event::GONE: return say("is not there; waiting for it");
    case FollowedFile::Event::APPEARED: say("is there"); break;
    case FollowedFile::Event::ANEW: say("was cut or replaced, and is shown anew"); break;
    }
    news.isAnew = true;
    m_Parser = TableParser();
    m_Plot.reset();
    m_NumRows = 0;
}

// False as long as there is nothing to show.
bool FollowedPlot::plan(News& news)
{
    const Table& table = m_Parser.getTable();
    try {
        if (m_Plot) {
            m_Plot = planAgain(m_Path, table, m_Choice, *m_Plot);
        } else if (table.hasNumbers()) {
            m_Plot = planPlot(m_Path, table, m_Choice);
            for (const std::string& line : remarksOn(m_Path, table, *m_Plot))
                news.lines.push_back(line);
        }
    } catch (const NoSuchColumn&) {
        if (!m_Plot)
            throw;
    } catch (const InputError&) { // there are no curves, or no more of them
    }
    return m_Plot.has_value();
}

PlotExhibit FollowedPlot::takeRows()
{
    Table table = m_Parser.takeRows();
    const std::size_t number = table.numRows;
    PlotExhibit rows = makePlot(std::move(table), *m_Plot, m_Name);
    if (!m_Plot->xColumn) {
        rows.xs.resize(number);
        std::iota(rows.xs.begin(), rows.xs.end(), static_cast<double>(m_NumRows));
    }
    m_NumRows += number;
    return rows;
}

} // namespace vireo_view
