#include "python/NumberArgument.h"
#include "python/colour.h"
#include "python/handles.h"

namespace tavo::python {

namespace {

using PlotClass = py::class_<PlotHandle>;
using SendY = Plot (Plot::*)(std::string_view, const Numbers&, const Statement&) const;
using SendXY = Plot (Plot::*)(std::string_view, const Numbers&, const Numbers&, const Statement&) const;

constexpr const char* X_SHAPE = "\n\nx and y are series of shape (n,), of any type of numbers; NaN is a gap. An "
                                "x of datetime64 or datetime is shown as dates and times.";

PlotHandle& sendY(PlotHandle& handle, SendY send, const std::string& name, const py::object& numbers, const char* what)
{
    const NumberArgument y(numbers, what);
    y.requireSeries();
    withoutGil([&] { (handle.plot.*send)(name, y.copy(), Statement()); });
    return handle;
}

// x, and what its type says of the axis.
Numbers sendX(const PlotHandle& handle, const NumberArgument& x)
{
    if (x.areMoments())
        handle.plot.timeX();
    return x.copy();
}

double numberAlongX(const PlotHandle& handle, const NumberArgument& x)
{
    if (x.areMoments())
        handle.plot.timeX();
    return x.number();
}

PlotHandle& sendXY(PlotHandle& handle, SendXY send, const std::string& name, const py::object& xs, const py::object& ys)
{
    const NumberArgument x(xs, "x");
    const NumberArgument y(ys, "y");
    x.requireSeries();
    y.requireSeries();
    withoutGil([&] {
        const Statement together;
        (handle.plot.*send)(name, sendX(handle, x), y.copy(), together);
    });
    return handle;
}

void addSeries(PlotClass& plot, const char* operation, SendY y, SendXY xy, const std::string& doc)
{
    const std::string text = doc + X_SHAPE;
    plot.def(
        operation,
        [y](PlotHandle& handle, const std::string& name, const py::object& numbers) -> PlotHandle& {
            return sendY(handle, y, name, numbers, "y");
        },
        py::arg("name"), py::arg("y"), SAME_HANDLE, (doc + " They stand at x = 0, 1, 2 ...").c_str());
    plot.def(
        operation,
        [xy](PlotHandle& handle, const std::string& name, const py::object& xs, const py::object& ys) -> PlotHandle& {
            return sendXY(handle, xy, name, xs, ys);
        },
        py::arg("name"), py::arg("x"), py::arg("y"), SAME_HANDLE, text.c_str());
}

PlotHandle& sendBand(
    PlotHandle& handle, const std::string& name, const py::object& xs, const py::object& lows, const py::object& highs)
{
    const NumberArgument x(xs, "x");
    const NumberArgument low(lows, "low");
    const NumberArgument high(highs, "high");
    for (const NumberArgument* series : {&x, &low, &high})
        series->requireSeries();
    withoutGil([&] {
        const Statement together;
        handle.plot.band(name, sendX(handle, x), low.copy(), high.copy());
    });
    return handle;
}

// Numbers or series of them.
PlotHandle& append(PlotHandle& handle, const std::string& name, const py::object& xs, const py::object& ys)
{
    const NumberArgument x(xs, "x");
    const NumberArgument y(ys, "y");
    for (const NumberArgument* series : {&x, &y})
        if (series->getNumDimensions() > 1)
            series->refuseShape("() or (n,)");
    withoutGil([&] {
        const Statement together;
        handle.plot.append(name, sendX(handle, x), y.copy());
    });
    return handle;
}

void addSamples(PlotClass& plot)
{
    addSeries(plot, "curve", &Plot::curve, &Plot::curve, "A line through samples, in their order.");
    addSeries(plot, "points", &Plot::points, &Plot::points, "Marks at samples, with no line between them.");
    addSeries(plot, "steps", &Plot::steps, &Plot::steps, "Samples each of which holds until the next one.");
    addSeries(plot, "bars", &Plot::bars, &Plot::bars, "Bars from zero to samples.");
    plot.def(
        "histogram",
        [](PlotHandle& handle, const std::string& name, const py::object& values) -> PlotHandle& {
            return sendY(handle, &Plot::histogram, name, values, "values");
        },
        py::arg("name"), py::arg("values"), SAME_HANDLE,
        "How many of the values, of shape (n,), lie where, in intervals of equal length.");
    plot.def("band", &sendBand, py::arg("name"), py::arg("x"), py::arg("low"), py::arg("high"), SAME_HANDLE,
        "The area between low and high, each of shape (n,) like x.");
    plot.def(
        "append",
        [](PlotHandle& handle, const std::string& name, double x, double y) -> PlotHandle& {
            withoutGil([&] { handle.plot.append(name, x, y); });
            return handle;
        },
        py::arg("name"), py::arg("x").noconvert(), py::arg("y").noconvert(), SAME_HANDLE,
        "One more sample of a curve, which the first one makes. The last 1,000,000 samples are kept; see keep().");
    plot.def("append", &append, py::arg("name"), py::arg("x"), py::arg("y"), SAME_HANDLE,
        "The same of as many samples as x and y, of shape (n,), have.");
    plot.def(
        "keep",
        [](PlotHandle& handle, const std::string& name, std::size_t count) -> PlotHandle& {
            handle.plot.keep(name, count);
            return handle;
        },
        py::arg("name"), py::arg("count"), SAME_HANDLE, WithoutGil(),
        "How many samples of an appended curve are kept, the newest ones.");
}

void addLooks(PlotClass& plot)
{
    plot.def(
        "colour",
        [](PlotHandle& handle, const std::string& name, const py::object& colour) -> PlotHandle& {
            const RGBA8 bytes = colourOf(colour);
            withoutGil([&] { handle.plot.colour(name, bytes); });
            return handle;
        },
        py::arg("name"), py::arg("colour"), SAME_HANDLE,
        "The colour of a curve: (red, green, blue) or (red, green, blue, opacity), each from 0 to 255.");
    plot.def(
        "style",
        [](PlotHandle& handle, const std::string& name, const std::string& style) -> PlotHandle& {
            handle.plot.style(name, style);
            return handle;
        },
        py::arg("name"), py::arg("style"), SAME_HANDLE, WithoutGil(),
        "How a curve looks, in words: \"dashed\" or \"dotted\", \"thick\", \"marks\"; \"y2\" has it counted by the "
        "second y axis, at the right.");
    plot.def(
        "title",
        [](PlotHandle& handle, const std::string& text) -> PlotHandle& {
            handle.plot.title(text);
            return handle;
        },
        py::arg("text"), SAME_HANDLE, WithoutGil(), "Sets the title; by default the plot's name.");
}

using SetAxis = Plot (Plot::*)(std::string_view, std::string_view, const Statement&) const;
using SetSwitch = Plot (Plot::*)(bool, const Statement&) const;

constexpr const char* RANGE_DOC =
    "The part of an axis that is seen, until the user chooses another. Without it all samples are seen. Along x it may "
    "be a time, of datetime64 or datetime.";
constexpr const char* LINE_DOC = "A line across the plot. Another one with the same label takes its place. x may be a "
                                 "time, of datetime64 or datetime.";

void addAxis(PlotClass& plot, const char* operation, SetAxis set)
{
    plot.def(
        operation,
        [set](PlotHandle& handle, const std::string& label, const std::string& unit) -> PlotHandle& {
            (handle.plot.*set)(label, unit, Statement());
            return handle;
        },
        py::arg("label"), py::arg("unit") = "", SAME_HANDLE, WithoutGil(),
        "Sets the label and unit of an axis, shown as \"pressure [Pa]\".");
}

void addSwitch(PlotClass& plot, const char* operation, const char* argument, SetSwitch set, const char* doc)
{
    plot.def(
        operation,
        [set](PlotHandle& handle, bool isOn) -> PlotHandle& {
            (handle.plot.*set)(isOn, Statement());
            return handle;
        },
        py::arg(argument) = true, SAME_HANDLE, WithoutGil(), doc);
}

// Numbers or moments along x.
void addPlacesAlongX(PlotClass& plot)
{
    plot.def(
        "x_range",
        [](PlotHandle& handle, const py::object& from, const py::object& to) -> PlotHandle& {
            const NumberArgument low(from, "low");
            const NumberArgument high(to, "high");
            low.requireOne();
            high.requireOne();
            withoutGil([&] {
                const Statement together;
                handle.plot.xRange(numberAlongX(handle, low), numberAlongX(handle, high));
            });
            return handle;
        },
        py::arg("low"), py::arg("high"), SAME_HANDLE, RANGE_DOC);
    plot.def(
        "vertical",
        [](PlotHandle& handle, const py::object& at, const std::string& label) -> PlotHandle& {
            const NumberArgument x(at, "x");
            x.requireOne();
            withoutGil([&] {
                const Statement together;
                handle.plot.vertical(numberAlongX(handle, x), label);
            });
            return handle;
        },
        py::arg("x"), py::arg("label") = "", SAME_HANDLE, LINE_DOC);
}

// The same along y, where there are only numbers.
void addPlacesAlongY(PlotClass& plot)
{
    plot.def(
        "y_range",
        [](PlotHandle& handle, double low, double high) -> PlotHandle& {
            handle.plot.yRange(low, high);
            return handle;
        },
        py::arg("low"), py::arg("high"), SAME_HANDLE, WithoutGil(), RANGE_DOC);
    plot.def(
        "horizontal",
        [](PlotHandle& handle, double y, const std::string& label) -> PlotHandle& {
            handle.plot.horizontal(y, label);
            return handle;
        },
        py::arg("y"), py::arg("label") = "", SAME_HANDLE, WithoutGil(), LINE_DOC);
}

void addAxes(PlotClass& plot)
{
    addAxis(plot, "x_axis", &Plot::xAxis);
    addAxis(plot, "y_axis", &Plot::yAxis);
    addAxis(plot, "y2_axis", &Plot::y2Axis);
    addSwitch(
        plot, "log_x", "is_log", &Plot::logX, "Makes the x axis logarithmic. Values of zero or less are not drawn.");
    addSwitch(
        plot, "log_y", "is_log", &Plot::logY, "Makes the y axis logarithmic. Values of zero or less are not drawn.");
    addSwitch(plot, "time_x", "is_time", &Plot::timeX,
        "Takes x for seconds since 1970 and shows dates and times of the local time zone.");
    addPlacesAlongX(plot);
    addPlacesAlongY(plot);
    plot.def(
        "window",
        [](PlotHandle& handle, double seconds) -> PlotHandle& {
            handle.plot.window(seconds);
            return handle;
        },
        py::arg("seconds"), SAME_HANDLE, WithoutGil(), "Shows no more of x than that, the newest of it.");
    plot.def(
        "link",
        [](PlotHandle& handle, const PlotHandle& other) -> PlotHandle& {
            handle.plot.link(other.plot);
            return handle;
        },
        py::arg("other"), SAME_HANDLE, WithoutGil(), "Shows the same part of x as the other plot, whichever is moved.");
}

} // namespace

void addPlot(py::module_& module)
{
    PlotClass plot(module, "Plot", madeByCalls(),
        "A plot: curves over two axes with numbers, in a view of the window. plot(name) makes it.\n\n"
        "Every operation returns the plot, so that calls can be chained, and may be called by any thread.");
    addSamples(plot);
    addLooks(plot);
    addAxes(plot);
    plot.def(
        "remove",
        [](PlotHandle& handle, const std::string& name) -> PlotHandle& {
            handle.plot.remove(name);
            return handle;
        },
        py::arg("name"), SAME_HANDLE, WithoutGil(), "Takes one curve away, and lines with that label.");
    plot.def(
        "clear",
        [](PlotHandle& handle) -> PlotHandle& {
            handle.plot.clear();
            return handle;
        },
        SAME_HANDLE, WithoutGil(), "Takes all curves and lines away.");
    plot.def("__repr__", [](const PlotHandle& handle) { return "vireo.plot(" + quoted(handle.name) + ")"; });
    plot.def("_repr_png_", [](const PlotHandle& handle) { return pngOf(handle.name); });
    module.def(
        "plot",
        [](const std::string& name) {
            return PlotHandle{name, withoutGil([&] { return tavo::plot(name); })};
        },
        py::arg("name"),
        "The plot of that name, the same in every thread. It is in the window as soon as anything is sent to it.\n\n"
        "    import numpy, vireo\n\n"
        "    t = numpy.linspace(0, 20, 2000)\n"
        "    vireo.plot(\"pressure\").curve(\"inlet\", t, numpy.sin(t)).y_axis(\"pressure\", \"Pa\")\n"
        "    vireo.show()\n\n"
        "Numbers are lists or numpy arrays of any type and layout; they are copied. Sending again under a name "
        "replaces what is shown under it.");
}

} // namespace tavo::python
