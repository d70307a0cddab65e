#include "vireo/show/volumes/TransferFunctionFiles.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <utility>

#include "tavo/base/debug/displayException.h"
#include "vireo/show/scenes/panelWidgets.h"
#include "vireo/show/window/shownText.h"

namespace tavo {

namespace {

constexpr int SPACING = 6; // in pixels
constexpr std::size_t LONGEST_LINE = 300;

} // namespace

TransferFunctionFiles::TransferFunctionFiles(QWidget* parent)
    : QWidget(parent)
    , m_Save(made(new QPushButton(tr("Save ...")), "saveFunction", tr("Save the transfer function"),
          tr("Saves colours, range and opacities in a file")))
    , m_Load(made(new QPushButton(tr("Load ...")), "loadFunction", tr("Load a transfer function"),
          tr("Takes colours, range and opacities from a file")))
    , m_Error(new QLabel)
{
    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(SPACING);
    grid->addWidget(m_Save, 0, 0);
    grid->addWidget(m_Load, 0, 1);
    grid->addWidget(m_Error, 1, 0, 1, 2);
    m_Error->setObjectName("functionError");
    m_Error->setTextFormat(Qt::PlainText);
    m_Error->setWordWrap(true);
    m_Error->hide();
    for (QPushButton* button : {m_Save, m_Load}) {
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        button->setMinimumWidth(1);
    }
    connect(m_Save, &QPushButton::clicked, this, [this] {
        askForFile(true, [function = m_Function](const QString& file) { return saveTransferFunction(file, function); });
    });
    connect(m_Load, &QPushButton::clicked, this, [this] {
        askForFile(false, [this](const QString& file) {
            TransferFunction function;
            const std::string why = loadTransferFunction(file, function);
            if (why.empty())
                emit functionLoaded(function);
            return why;
        });
    });
}

void TransferFunctionFiles::setFunction(TransferFunction function)
{
    m_Function = std::move(function);
}

// Without blocking the program.
void TransferFunctionFiles::askForFile(bool isSaved, const std::function<std::string(const QString& file)>& work)
{
    auto* const dialog = new QFileDialog(this, isSaved ? tr("Save transfer function") : tr("Load transfer function"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(isSaved ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog->setFileMode(isSaved ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog->setNameFilters({tr("Transfer functions (*.json)")});
    dialog->setDefaultSuffix("json");
    connect(dialog, &QFileDialog::fileSelected, this,
        [this, work](const QString& file) { runGuarded([&] { say(file, work(file)); }); });
    dialog->open();
}

void TransferFunctionFiles::say(const QString& file, const std::string& what)
{
    m_Error->setVisible(!what.empty());
    if (what.empty())
        return;
    m_Error->setText(shownText(QFileInfo(file).fileName().toStdString() + ": " + what, LONGEST_LINE));
    warning(file.toStdString() + ": " + what);
}

} // namespace tavo
