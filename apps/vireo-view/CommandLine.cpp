#include "apps/vireo-view/CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QStandardPaths>
#include <optional>
#include <utility>

namespace vireo_view {

namespace {

const QString DESCRIPTION = QStringLiteral(
    "Shows volumes, points and surfaces in space, images, and plots of columns of numbers.\n"
    "\n"
    "NIfTI (.nii, .nii.gz, .hdr and .img), NRRD, MetaImage (.mha and .mhd), DICOM files or folders with them, and "
    "TIFF\n"
    "files of many like pages become volumes, and so does what --raw says how to read; several times have a\n"
    "slider. PLY, OFF, OBJ, STL, glTF\n"
    "(.gltf and .glb), XYZ and PTS files become scenes: surfaces where they have faces, and points where they have\n"
    "none, with their colours, normals and all their numbers. PNG, JPEG, TIFF, PFM and others become images, with\n"
    "the numbers that they have, and several frames a stack. Texts with columns of numbers (.csv, .txt, .dat, .tsv\n"
    "and others) become plots. Without a file, an MRI head, a scanned building and curves computed from both are\n"
    "shown.\n"
    "\n"
    "In a plot, x is the first column with dates and times, or else the first column if it only grows or "
    "only falls; the\n"
    "other columns with numbers are curves over it. Columns may be named in a first line, and be "
    "separated by semicolons,\n"
    "tabs, commas or blanks; numbers may have decimal commas, where these do not separate.\n"
    "\n"
    "In a scene, the left button turns, the right one moves, the wheel zooms to what is under the pointer, a double "
    "click\n"
    "centres, and Home shows everything. The panel (p) has the colours and the opacity of a volume.\n"
    "\n"
    "The exit status is 0, or 1 if something could not be shown, or 2 if the command line is wrong.");

const QString DATA_DIRECTORY_VARIABLE = QStringLiteral("VIREO_VIEW_DATA");

template <typename Value>
using Choice = std::vector<std::pair<QString, Value>>;

const Choice<Axis> AXES = {{"x", Axis::X}, {"y", Axis::Y}, {"z", Axis::Z}};

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
        m_Parser.addOptions({m_X, m_Columns, m_Follow, m_Plot, m_Space, m_Path, m_Together, m_Up, m_Raw, m_Volume,
            m_Slices, m_Overlay, m_Labels, m_Curves, m_Data, m_Pictures, m_Help, m_Version});
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
        const std::optional<Axis> up = chosen(AXES, m_Parser.value(m_Up));
        if (!up)
            return misuse("--up is x, y or z, not '" + m_Parser.value(m_Up) + "'");
        const std::optional<RawFormat> raw = parseRawFormat(m_Parser.value(m_Raw).toStdString());
        if (m_Parser.isSet(m_Raw) && !raw)
            return misuse("--raw is a size and a type, such as 256x256x128:int16, not '" + m_Parser.value(m_Raw) + "'");
        if (raw && m_Parser.positionalArguments().isEmpty())
            return misuse("--raw needs a file");
        if (m_Parser.isSet(m_Pictures) && m_Parser.value(m_Pictures).isEmpty())
            return misuse("--pictures needs the name of a directory");
        if (m_Parser.isSet(m_Plot) + m_Parser.isSet(m_Space) + m_Parser.isSet(m_Path) > 1)
            return misuse("--plot, --space and --path cannot go together");
        if (m_Parser.isSet(m_Follow) && m_Parser.isSet(m_Pictures))
            return misuse("--follow and --pictures cannot go together");
        if (m_Parser.isSet(m_Follow) && m_Parser.positionalArguments().isEmpty())
            return misuse("--follow needs a file");

        const bool areSliced = m_Parser.isSet(m_Slices) || m_Parser.isSet(m_Overlay) || m_Parser.isSet(m_Labels);
        if (areSliced && m_Parser.positionalArguments().isEmpty())
            return misuse("--slices, --overlay and --labels need a file");

        Options options;
        options.files = m_Parser.positionalArguments();
        options.dataDirectory = m_Parser.isSet(m_Data) ? m_Parser.value(m_Data) : defaultDataDirectory();
        options.picturesDirectory = m_Parser.value(m_Pictures);
        options.isFollowing = m_Parser.isSet(m_Follow);
        options.areSliced = areSliced;
        options.overlay = m_Parser.value(m_Overlay);
        options.labels = m_Parser.value(m_Labels);
        options.areTogether = m_Parser.isSet(m_Together);
        options.load = {columnsAs(), columns(), *up, m_Parser.isSet(m_Curves), raw};
        options.load.areVolumes = areSliced || m_Parser.isSet(m_Volume);
        return options;
    }

    ColumnsAs columnsAs() const
    {
        if (m_Parser.isSet(m_Path))
            return ColumnsAs::PATH;
        if (m_Parser.isSet(m_Space))
            return ColumnsAs::POINTS;
        return m_Parser.isSet(m_Plot) ? ColumnsAs::PLOT : ColumnsAs::AUTOMATIC;
    }

    ColumnChoice columns() const
    {
        ColumnChoice choice;
        choice.x = m_Parser.value(m_X).toStdString();
        for (const QString& names : m_Parser.values(m_Columns))
            for (const QString& name : names.split(',', Qt::SkipEmptyParts))
                choice.columns.push_back(name.trimmed().toStdString());
        return choice;
    }

    QCommandLineParser m_Parser;
    QCommandLineOption m_X{
        "x", "The column along x of a plot: its name or its number from 1; 0 is the number of the row.", "column"};
    QCommandLineOption m_Columns{"columns",
        "The columns that are shown, as \"p,T\" or \"2,4\": the curves of a plot, or x, y and z in space.", "columns"};
    QCommandLineOption m_Follow{"follow", "Show what is added to the files of plots while they are shown, of each "
                                          "curve the newest 1,000,000 values. A file "
                                          "that is replaced is shown anew, and one that is not there is waited for."};
    QCommandLineOption m_Plot{"plot", "Show columns of numbers as a plot, those of .xyz, .pwn and .pts files, too."};
    QCommandLineOption m_Space{"space", "Show columns of numbers as points in space: x, y and z."};
    QCommandLineOption m_Path{"path", "Show columns of numbers as a curve in space, through these points."};
    QCommandLineOption m_Together{"together", "Show the points, surfaces and volumes of all files in one scene."};
    QCommandLineOption m_Up{"up",
        "The axis of scenes that is seen upwards: x, y or z. With x or z, the longer side of the rest faces the "
        "viewer.",
        "axis", "y"};
    QCommandLineOption m_Raw{"raw",
        "The files hold nothing but voxels: so many along x, y and z, and times where there are several, of a type: "
        "int8, "
        "uint8, int16, uint16, int32, uint32, int64, uint64, float or double; and \":be\" where the first byte of a "
        "number is its greatest, as in 256x256x128:int16:be.",
        "format"};
    QCommandLineOption m_Volume{"volume", "Show the pages of a TIFF file as a volume, however few they are."};
    QCommandLineOption m_Slices{"slices", "Show volumes in slices: three planes through a crosshair."};
    QCommandLineOption m_Overlay{"overlay", "Show this volume on the slices, in colours of its own.", "file"};
    QCommandLineOption m_Labels{"labels",
        "Show the labels of this volume on the slices, with the names and the colours of the files beside it that end "
        "with .txt and .lut.",
        "file"};
    QCommandLineOption m_Curves{"curves",
        "Show the histogram of every volume, and the height histogram and the silhouette of every "
        "scene, too."};
    QCommandLineOption m_Data{"data",
        "Where the head and the building are that are shown without a file: ch2.nii.gz (from Debian's mricron-data, "
        "which is found, too) and building.ply, which scripts/example-data puts there. Default: $" +
            DATA_DIRECTORY_VARIABLE + ", else vireo-view in the user's cache directory.",
        "dir"};
    QCommandLineOption m_Pictures{
        "pictures", "Save a picture of everything, as a PNG in this directory, and end.", "dir"};
    QCommandLineOption m_Help{{"h", "help"}, "Show this help."};
    QCommandLineOption m_Version{{"v", "version"}, "Show the version."};
};

} // namespace

std::variant<Options, Answer> parseCommandLine(const QStringList& arguments)
{
    return CommandLineParser().parse(arguments);
}

} // namespace vireo_view
