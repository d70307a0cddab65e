#include "vireo/show/window/gestureHelp.h"

#include <QMessageBox>

namespace tavo {

namespace {

QString textOf(const std::vector<Gesture>& gestures)
{
    QString rows;
    for (const Gesture& gesture : gestures)
        rows += QStringLiteral("<tr><td style='padding-right: 16px'><b>%1</b></td><td>%2</td></tr>")
                    .arg(QMessageBox::tr(gesture.how).toHtmlEscaped(), QMessageBox::tr(gesture.what).toHtmlEscaped());
    return "<table style='white-space: nowrap'>" + rows + "</table>";
}

} // namespace

void openGestureHelp(QWidget& view, const std::vector<Gesture>& gestures)
{
    const char* const NAME = "gestureHelp";
    delete view.findChild<QMessageBox*>(NAME, Qt::FindDirectChildrenOnly);
    auto* const box = new QMessageBox(&view);
    box->setObjectName(NAME);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(QMessageBox::tr("Mouse and keys"));
    box->setTextFormat(Qt::RichText);
    box->setText(textOf(gestures));
    box->setStandardButtons(QMessageBox::Close);
    box->setModal(false);
    box->show();
}

} // namespace tavo
