#include "tavo/base/debug/DebugSection.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "tavo/base/debug/EventDisplayer.h"
#include "tavo/base/debug/displayException.h"
#include "tavo/base/files/saveFile.h"
#include "tavo/base/gui/WidgetPicture.h"
#include "tavo/base/objects/MetaClass.h"
#include "tavo/base/text/printable.h"

namespace tavo {

namespace {

std::unique_ptr<EventDisplayer> makeDisplayer(const MetaClass* displayerClass)
{
    if (!displayerClass)
        throw PException("DebugOutput::displayEvent() - no displayer class");
    if (displayerClass->isAbstract())
        throw PException(
            "DebugOutput::displayEvent() - the class " + std::string(displayerClass->getName()) + " is abstract");

    std::unique_ptr<Object> object(displayerClass->newInstance());
    auto* displayer = dynamic_cast<EventDisplayer*>(object.get());
    if (!displayer)
        throw PException("DebugOutput::displayEvent() - the class " + std::string(displayerClass->getName()) +
                         " makes no event displayers");
    static_cast<void>(object.release());
    return std::unique_ptr<EventDisplayer>(displayer);
}

QToolButton* makeButton(QWidget* parent, const char* objectName, const QString& toolTip)
{
    auto* button = new QToolButton(parent);
    button->setObjectName(objectName);
    button->setToolTip(toolTip);
    button->setAutoRaise(true);
    return button;
}

// A line of text that is cut where it does not fit, and wants no width of its own.
class ElidedLabel : public QLabel
{
public:
    ElidedLabel(QString text, QWidget* parent)
        : QLabel(parent)
        , m_Text(std::move(text))
    {
        setTextFormat(Qt::PlainText);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    }

protected:
    void resizeEvent(QResizeEvent* event) override
    {
        QLabel::resizeEvent(event);
        setText(fontMetrics().elidedText(m_Text, Qt::ElideRight, contentsRect().width()));
    }

private:
    QString m_Text;
};

// Longer than any title bar is wide, and laid out quickly.
constexpr std::size_t LONGEST_TITLE = 1000;

QString titleOf(const std::string& name)
{
    return QString::fromStdString(printable(name, LONGEST_TITLE));
}

// The name in lines, since a tool tip breaks none, and the class below.
QString toolTipOf(const std::string& name, const char* displayerClass)
{
    constexpr std::size_t LONGEST_NAME = 4000;
    constexpr int LINE_LENGTH = 100;
    const QVector<uint> shown = QString::fromStdString(printable(name, LONGEST_NAME)).toUcs4();
    QString lines;
    for (int i = 0; i < shown.size(); i += LINE_LENGTH)
        lines += QString::fromUcs4(&shown[i], std::min(LINE_LENGTH, shown.size() - i)) + "\n";
    return "<p style='white-space:pre'>" + (lines + displayerClass).toHtmlEscaped() + "</p>";
}

} // namespace

DebugSection::DebugSection(const MetaClass* displayerClass, std::string name, QWidget* parent)
    : QFrame(parent)
    , m_DisplayerClass(displayerClass)
    , m_Name(std::move(name))
    , m_Displayer(makeDisplayer(displayerClass))
    , m_TitleBar(makeTitleBar())
{
    setFrameShape(QFrame::StyledPanel);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_TitleBar);

    m_Widget = m_Displayer->getWidget(this);
    if (m_Widget)
        layout->addWidget(m_Widget);
}

// The widget goes before the displayer that made it.
DebugSection::~DebugSection()
{
    delete m_Widget;
}

QWidget* DebugSection::makeTitleBar()
{
    auto* bar = new QWidget(this);
    m_CollapseButton = makeButton(bar, "collapse", tr("Collapse or expand"));
    m_CollapseButton->setArrowType(Qt::DownArrow);
    m_CollapseButton->setCheckable(true);
    connect(m_CollapseButton, &QToolButton::toggled, this, &DebugSection::setCollapsed);

    auto* title = new ElidedLabel(titleOf(m_Name), bar);
    title->setObjectName("title");
    title->setToolTip(toolTipOf(m_Name, m_DisplayerClass->getName()));

    QToolButton* saveButton = makeButton(bar, "save", tr("Save a picture"));
    saveButton->setIcon(style()->standardIcon(QStyle::SP_DialogSaveButton));
    connect(saveButton, &QToolButton::clicked, this, &DebugSection::askWhereToSave);

    QToolButton* closeButton = makeButton(bar, "close", tr("Close"));
    closeButton->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    connect(closeButton, &QToolButton::clicked, this, [this] { setClosed(true); });

    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(m_CollapseButton);
    layout->addWidget(title, 1);
    layout->addWidget(saveButton);
    layout->addWidget(closeButton);
    return bar;
}

QString DebugSection::getShortTitle() const
{
    constexpr int WIDTH = 400;
    return fontMetrics().elidedText(titleOf(m_Name), Qt::ElideRight, WIDTH);
}

bool DebugSection::isCollapsed() const
{
    return m_CollapseButton->isChecked();
}

void DebugSection::setCollapsed(bool collapsed)
{
    m_CollapseButton->setChecked(collapsed);
    m_CollapseButton->setArrowType(collapsed ? Qt::RightArrow : Qt::DownArrow);
    if (m_Widget)
        m_Widget->setHidden(collapsed);
}

void DebugSection::setClosed(bool closed)
{
    m_IsClosed = closed;
    setHidden(closed);
    emit closedChanged();
}

QImage DebugSection::getPicture()
{
    QImage picture;
    if (m_Widget)
        runGuarded([&] { picture = grabPicture(m_Widget); });
    return picture;
}

QImage DebugSection::getPicture(const QSize& size)
{
    QImage picture;
    if (m_Widget)
        runGuarded([&] { picture = grabPicture(m_Widget, size); });
    return picture;
}

bool DebugSection::savePicture(const QString& fileName)
{
    return runGuarded([&] {
        const QImage picture = getPicture();
        if (picture.isNull())
            throw PException("DebugSection::savePicture() - there is no picture for " + fileName.toStdString());
        if (const std::string error = tavo::savePicture(fileName, picture); !error.empty())
            throw PException("DebugSection::savePicture() - cannot write " + fileName.toStdString() + ": " + error);
    });
}

void DebugSection::askWhereToSave()
{
    auto* dialog = new QFileDialog(this, tr("Save a picture of %1").arg(getShortTitle()));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilter(tr("Pictures (*.png)"));
    dialog->setDefaultSuffix("png");
    connect(dialog, &QFileDialog::fileSelected, this, &DebugSection::savePicture);
    dialog->open();
}

} // namespace tavo
