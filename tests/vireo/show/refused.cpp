// Calls that the compiler refuses, one for each value of REFUSED; none for 0.
#include <cstdio>
#include <string>
#include <vector>

#include "vireo/show/show.h"

#ifdef VIREO_HAVE_EIGEN
#include <Eigen/Core>
#endif

struct Pair
{
    double a, b;
};

int main()
{
    const tavo::Plot plot = tavo::plot("plot");
#if REFUSED == 1
    plot.curve("text", std::string("1 2 3"));
#elif REFUSED == 2
    plot.curve("literal", "1 2 3");
#elif REFUSED == 3
    const bool flags[] = {true, false};
    plot.curve("flags", flags);
#elif REFUSED == 4
    plot.curve("bits", std::vector<bool>{true, false});
#elif REFUSED == 5
    plot.curve("structures", std::vector<Pair>(3));
#elif REFUSED == 6
    plot.curve("number", 3.0);
#elif REFUSED == 7
    plot.curve("matrix", std::vector<std::vector<double>>(3));
#elif REFUSED == 8
    plot.curve("matrix", Eigen::MatrixXd(3, 3));
#elif REFUSED == 9
    using namespace tavo;
    remove("x");
#elif REFUSED == 10
    tavo::scene("scene").cloud("points", std::vector<tavo::Vector2d>(3));
#elif REFUSED == 11
    tavo::scene("scene").cloud("points", std::vector<Pair>(3));
#elif REFUSED == 12
    tavo::image("image", std::vector<bool>(4), 2, 2);
#endif
    plot.curve("curve", std::vector<double>{1, 2});
    tavo::scene("scene").cloud("points", std::vector<tavo::Vector3d>(3));
}
