#include <qcustomplot.h>

#include "benchmarks/first-curve/painted.h"

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QCustomPlot plot;
    const std::vector<float> wave = vireo_bench::wave();
    QVector<double> places;
    QVector<double> values;
    for (std::size_t i = 0; i < wave.size(); ++i) {
        places.append(static_cast<double>(i) / static_cast<double>(wave.size()));
        values.append(wave[i]);
    }
    plot.addGraph()->setData(places, values, true);
    plot.rescaleAxes();
    plot.show();
    vireo_bench::Painted(plot, 1);
    return 0;
}
