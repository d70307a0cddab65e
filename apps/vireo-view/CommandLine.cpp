#include "apps/vireo-view/CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QStandardPaths>
#include <optional>
#include <utility>

namespace vireo_view {

namespace {

const QString DESCRIPTION =
    QStringLiteral("Shows volumes, point clouds and curves.\n"
                   "\n"
                   "NIfTI files (.nii, .nii.gz, .hdr and .img) become volumes, PLY, OFF and XYZ files point clouds, "
                   "texts with columns\n"
                   "of numbers (CSV or separated by blanks) curves: one column a series, two a graph, three a curve in "
                   "space, more the\n"
                   "graphs of the others over the first. Without a file, an MRI head, a scanned building and curves "
                   "computed from both\n"
                   "are shown.\n"
                   "\n"
                   "In a view, the left button turns, the right button and the wheel move nearer and farther, the "
                   "middle button shifts,\n"
                   "and Home goes back. \"Configure\" opens what can be set, of a volume its colours and "
                   "opacity.\n"
                   "\n"
                   "The exit status is 0, or 1 if something could not be shown, or 2 if the command line is wrong.");

const QString DATA_DIRECTORY_VARIABLE = QStringLiteral("VIREO_VIEW_DATA");

template <typename Value>
using Choice = std::vector<std::pair<QString, Value>>;

const Choice<Axis> AXES = {{"x", Axis::X}, {"y", Axis::Y}, {"z", Axis::Z}};

const Choice<ColumnsAs> COLUMNS_AS = {{"auto", ColumnsAs::AUTOMATIC}, {"series", ColumnsAs::SERIES},
    {"2d", ColumnsAs::PLANE}, {"3d", ColumnsAs::SPACE}, {"cloud", ColumnsAs::CLOUD}};

template <typename Value>
std::optional<Value> chosen(const Choice<Value>& choice, const QString& name)
{
    for (const auto& [valueName, value] : choice)
        if (valueName == name)
            return value;
    return std::nullopt;
}

QString defaultDataDirectory()
{
    QString fromEnvironment = qEnvironmentVariable(DATA_DIRECTORY_VARIABLE.toLatin1().constData());
    if (!fromEnvironment.isEmpty())
        return fromEnvironment;
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + "/vireo-view";
}

class CommandLineParser
{
public:
    CommandLineParser()
    {
        m_Parser.setApplicationDescription(DESCRIPTION);
        m_Parser.addPositionalArgument("FILE", "What to show.", "[FILE...]");
        m_Parser.addOptions({m_Columns, m_Up, m_Curves, m_Data, m_Pictures, m_Help, m_Version});
    }

    std::variant<Options, Answer> parse(const QStringList& arguments)
    {
        if (!m_Parser.parse(arguments))
            return misuse(m_Parser.errorText());
        if (m_Parser.isSet(m_Help))
            return Answer{helpText(), 0};
        if (m_Parser.isSet(m_Version))
            return Answer{QStringLiteral("vireo-view " VIREO_VERSION "\n"), 0};
        return makeOptions();
    }

private:
    static Answer misuse(const QString& reason)
    {
        return {"vireo-view: " + reason + " (see vireo-view --help)\n", EXIT_STATUS_USAGE};
    }

    QString helpText() const
    {
        // The parser asks the application for the program's name.
        char program[] = "vireo-view";
        char* arguments[] = {program, nullptr};
        int numArguments = 1;
        std::optional<QCoreApplication> application;
        if (!QCoreApplication::instance())
            application.emplace(numArguments, arguments);
        return m_Parser.helpText();
    }

    std::variant<Options, Answer> makeOptions() const
    {
        const std::optional<ColumnsAs> columnsAs = chosen(COLUMNS_AS, m_Parser.value(m_Columns));
        if (!columnsAs)
            return misuse("--columns is auto, series, 2d, 3d or cloud, not '" + m_Parser.value(m_Columns) + "'");
        const std::optional<Axis> up = chosen(AXES, m_Parser.value(m_Up));
        if (!up)
            return misuse("--up is x, y or z, not '" + m_Parser.value(m_Up) + "'");
        if (m_Parser.isSet(m_Pictures) && m_Parser.value(m_Pictures).isEmpty())
            return misuse("--pictures needs the name of a directory");

        Options options;
        options.files = m_Parser.positionalArguments();
        options.dataDirectory = m_Parser.isSet(m_Data) ? m_Parser.value(m_Data) : defaultDataDirectory();
        options.picturesDirectory = m_Parser.value(m_Pictures);
        options.load = {*columnsAs, *up, m_Parser.isSet(m_Curves)};
        return options;
    }

    QCommandLineParser m_Parser;
    QCommandLineOption m_Columns{
        "columns", "How columns of numbers are shown: auto, series, 2d, 3d or cloud.", "kind", "auto"};
    QCommandLineOption m_Up{"up",
        "The axis of clouds that is turned upwards: x, y or z. The longer side of the rest faces the viewer.", "axis",
        "y"};
    QCommandLineOption m_Curves{"curves",
        "Show the histogram of every volume, and the height histogram and the silhouette of every "
        "cloud, too."};
    QCommandLineOption m_Data{"data",
        "Where the head and the building are that are shown without a file: ch2.nii.gz (from Debian's mricron-data, "
        "which is found, too) and CGAL's data.tar.gz (from libcgal-demo), unpacked. Default: $" +
            DATA_DIRECTORY_VARIABLE + ", else vireo-view in the user's cache directory.",
        "dir"};
    QCommandLineOption m_Pictures{
        "pictures", "Save a picture of every section, as a PNG in this directory, and end.", "dir"};
    QCommandLineOption m_Help{{"h", "help"}, "Show this help."};
    QCommandLineOption m_Version{{"v", "version"}, "Show the version."};
};

} // namespace

std::variant<Options, Answer> parseCommandLine(const QStringList& arguments)
{
    return CommandLineParser().parse(arguments);
}

} // namespace vireo_view
