#include <cmath>
#include <vector>
#include <vireo/show/show.h>

int main()
{
    std::vector<double> times;
    std::vector<double> inlet;
    std::vector<double> outlet;
    for (int i = 0; i < 2000; ++i) {
        const double t = 0.01 * i;
        times.push_back(t);
        inlet.push_back(101325 + 300 * std::sin(t));
        outlet.push_back(101325 + 300 * std::exp(-0.1 * t) * std::sin(2 * t));
    }
    tavo::plot("pressure")
        .curve("inlet", times, inlet)
        .curve("outlet", times, outlet)
        .xAxis("time", "s")
        .yAxis("pressure", "Pa");
    tavo::show();
}
