// docked-plot SVG PICTURE: shows a plot in a dock, saves the plot as SVG, and has both of Qt's plugins for SVG read
// that. The picture is an icon of it, larger than the plot: the plugin for icons draws it in any size, and without that
// plugin it would keep its own size.
#include <DockManager.h>
#include <DockWidget.h>
#include <QApplication>
#include <QIcon>
#include <QImage>
#include <QMainWindow>
#include <QPixmap>
#include <qwt_plot.h>
#include <qwt_plot_renderer.h>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    if (argc != 3)
        return 1;
    QMainWindow window;
    auto* docks = new ads::CDockManager(&window);
    auto* dock = new ads::CDockWidget("plot");
    auto* plot = new QwtPlot(QwtText("a plot"));
    dock->setWidget(plot);
    docks->addDockWidget(ads::CenterDockWidgetArea, dock);
    window.show();
    if (window.grab().isNull())
        return 1;

    const QSizeF millimetres(20, 20);
    QwtPlotRenderer().renderDocument(plot, argv[1], millimetres, 85);
    if (QImage(argv[1]).isNull())
        return 1;
    const QPixmap icon = QIcon(argv[1]).pixmap(256, 256);
    return icon.width() == 256 && icon.save(argv[2]) ? 0 : 1;
}
