#include "tavo/base/debug/DebugWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollArea>
#include <QSplitter>
#include <QTextBlock>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>

#include "tavo/base/debug/DebugSection.h"
#include "tavo/base/debug/LogText.h"

namespace tavo {

namespace {

// Other characters that a text document takes for the end of a line, or of more, are shown as ones that cannot be
// shown.
QString withLineFeedsOnly(QString text)
{
    constexpr ushort BEGINNING_OF_FRAME = 0xFDD0;
    constexpr ushort END_OF_FRAME = 0xFDD1;
    for (const ushort c :
        {ushort(QChar::ParagraphSeparator), ushort(QChar::LineSeparator), BEGINNING_OF_FRAME, END_OF_FRAME})
        text.replace(QChar(c), QChar(QChar::ReplacementCharacter));
    return text;
}

constexpr QSize PREFERRED_SIZE(640, 720);
constexpr int LOG_HEIGHT = 120;

// The widget's own limit to its lines lays out every line that it drops.
void dropOldLines(QTextDocument& document)
{
    constexpr int MAX_LINES = LogText::MAX_LINES;
    const QTextBlock firstKept = document.findBlockByNumber(std::max(0, document.blockCount() - MAX_LINES));
    QTextCursor dropped(&document);
    dropped.setPosition(firstKept.position(), QTextCursor::KeepAnchor);
    dropped.removeSelectedText();
}

bool hasOtherWindows(const QWidget* window)
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [window](const QWidget* other) {
        return other != window && other->isVisible() && other->testAttribute(Qt::WA_QuitOnClose);
    });
}

} // namespace

DebugWindow::DebugWindow(OwnLayout)
    : m_SectionLayout(nullptr)
    , m_ClosedSections(nullptr)
    , m_ClosedMenu(nullptr)
    , m_Log(new QPlainTextEdit)
{
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_ShowWithoutActivating);
    m_Log->setObjectName("log");
    m_Log->setReadOnly(true);
    m_Log->setUndoRedoEnabled(false);
}

DebugWindow::DebugWindow()
    : DebugWindow(OwnLayout())
{
    setWindowTitle(tr("Debug output"));
    makeLayout();
    const QScreen* const screen = QGuiApplication::primaryScreen(); // some platforms start without one
    resize(screen ? PREFERRED_SIZE.boundedTo(screen->availableSize()) : PREFERRED_SIZE);
}

void DebugWindow::makeLayout()
{
    m_ClosedSections = new QToolButton(this);
    m_ClosedMenu = new QMenu(m_ClosedSections);
    m_ClosedSections->setObjectName("closedSections");
    m_ClosedSections->setText(tr("Closed sections"));
    m_ClosedSections->setMenu(m_ClosedMenu);
    m_ClosedSections->setPopupMode(QToolButton::InstantPopup);
    m_ClosedSections->hide();

    auto* sections = new QWidget;
    m_SectionLayout = new QVBoxLayout(sections);
    m_SectionLayout->setContentsMargins(2, 2, 2, 2);
    m_SectionLayout->addStretch();
    auto* scrollArea = new QScrollArea;
    scrollArea->setWidgetResizable(true);
    // Always there: appearing, it would move the buttons of the sections away from under the pointer.
    scrollArea->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    scrollArea->setWidget(sections);

    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->addWidget(scrollArea);
    splitter->addWidget(m_Log);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 0);
    splitter->setSizes({PREFERRED_SIZE.height() - LOG_HEIGHT, LOG_HEIGHT});

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_ClosedSections);
    layout->addWidget(splitter);
}

DebugWindow::~DebugWindow() = default;

EventDisplayer& DebugWindow::getDisplayer(const MetaClass* displayerClass, const std::string& name)
{
    DebugSection* section = findSection(displayerClass, name);
    if (!section)
        section = addSection(displayerClass, name);
    return section->getDisplayer();
}

DebugSection* DebugWindow::findSection(const MetaClass* displayerClass, const std::string& name) const
{
    const auto found = std::find_if(m_Sections.begin(), m_Sections.end(), [&](const DebugSection* section) {
        return section->getDisplayerClass() == displayerClass && section->getName() == name;
    });
    return found != m_Sections.end() ? *found : nullptr;
}

DebugSection* DebugWindow::addSection(const MetaClass* displayerClass, const std::string& name)
{
    auto section = std::make_unique<DebugSection>(displayerClass, name, nullptr);
    m_Sections.push_back(section.get());
    place(section.get());
    show();
    return section.release();
}

void DebugWindow::place(DebugSection* section)
{
    connect(section, &DebugSection::closedChanged, this, &DebugWindow::listClosedSections);
    m_SectionLayout->insertWidget(m_SectionLayout->count() - 1, section);
}

void DebugWindow::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
    if (QGuiApplication::quitOnLastWindowClosed() && !hasOtherWindows(this))
        QCoreApplication::quit();
}

void DebugWindow::listClosedSections()
{
    m_ClosedMenu->clear();
    for (DebugSection* section : m_Sections)
        if (section->isClosed())
            m_ClosedMenu->addAction(
                section->getShortTitle().replace("&", "&&"), section, [section] { section->setClosed(false); });
    m_ClosedSections->setVisible(!m_ClosedMenu->isEmpty());
}

void DebugWindow::appendText(const std::string& text)
{
    const bool follow = !m_Log->textCursor().hasSelection();
    QTextCursor end(m_Log->document());
    end.beginEditBlock(); // one layout for both
    end.movePosition(QTextCursor::End);
    end.insertText(withLineFeedsOnly(QString::fromStdString(text)));
    dropOldLines(*m_Log->document());
    end.endEditBlock();
    if (follow) {
        m_Log->moveCursor(QTextCursor::End);
        m_Log->ensureCursorVisible();
    }
}

} // namespace tavo
