#include "tavo/base/debug/DebugSection.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>
#include <utility>

#include "tavo/base/debug/EventDisplayer.h"
#include "tavo/base/debug/displayException.h"
#include "tavo/base/files/saveFile.h"
#include "tavo/base/gui/WidgetPicture.h"
#include "tavo/base/objects/MetaClass.h"

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

} // namespace

DebugSection::DebugSection(const MetaClass* displayerClass, std::string name, QWidget* parent)
    : QFrame(parent)
    , m_DisplayerClass(displayerClass)
    , m_Name(std::move(name))
    , m_Displayer(makeDisplayer(displayerClass))
{
    setFrameShape(QFrame::StyledPanel);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeTitleBar());

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

    auto* title = new QLabel(QString::fromStdString(m_Name), bar);
    title->setToolTip(m_DisplayerClass->getName());
    title->setTextFormat(Qt::PlainText);

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

bool DebugSection::savePicture(const QString& fileName)
{
    return runGuarded([&] {
        if (const std::string error = tavo::savePicture(fileName, getPicture()); !error.empty())
            throw PException("DebugSection::savePicture() - cannot write " + fileName.toStdString() + ": " + error);
    });
}

void DebugSection::askWhereToSave()
{
    auto* dialog = new QFileDialog(this, tr("Save a picture of %1").arg(QString::fromStdString(m_Name)));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilter(tr("Pictures (*.png)"));
    dialog->setDefaultSuffix("png");
    connect(dialog, &QFileDialog::fileSelected, this, &DebugSection::savePicture);
    dialog->open();
}

} // namespace tavo
