#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "apps/vireo-view/FollowedFile.h"
#include "apps/vireo-view/TablePlot.h"

namespace vireo_view {

// The plot of a table in a file that grows.
class FollowedPlot
{
public:
    struct News
    {
        bool isAnew = false;             // what was shown goes
        std::optional<PlotExhibit> rows; // new ones; every one has an x
        std::vector<std::string> lines;  // what a person should know
    };

    FollowedPlot(const std::filesystem::path& file, std::string name, ColumnChoice choice);

    const std::string& getName() const { return m_Name; }

    // What has come since the last call, or as much of it as is read at once. As long as there is nothing to show,
    // none. Throws InputError if the file cannot be followed, and NoSuchColumn.
    News poll();

    // Whether there is more, without waiting.
    bool hasMore() const { return m_File.hasMore(); }

private:
    void tell(FollowedFile::Event event, News& news);
    bool plan(News& news);
    PlotExhibit takeRows();

    std::filesystem::path m_Path;
    std::string m_Name;
    ColumnChoice m_Choice;
    FollowedFile m_File;
    TableParser m_Parser;
    std::optional<TablePlot> m_Plot;
    std::size_t m_NumRows = 0; // that were taken
};

} // namespace vireo_view
