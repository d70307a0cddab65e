#include <pybind11/stl.h>

#include "python/NumberArgument.h"
#include "python/handles.h"

namespace tavo::python {

namespace {

using ImageClass = py::class_<ImageHandle>;

// The pixels of one image, whose shape says its size.
class PixelArgument
{
public:
    explicit PixelArgument(const py::object& array)
        : m_Pixels(array, "pixels")
    {
        const std::size_t numDimensions = m_Pixels.getNumDimensions();
        m_HasChannels = numDimensions == 3 && m_Pixels.getExtent(2) >= 1 && m_Pixels.getExtent(2) <= 4;
        if (m_Pixels.isLookedAt() && numDimensions != 2 && !m_HasChannels)
            m_Pixels.refuseShape("(height, width) or (height, width, channels) of at most 4 channels");
    }

    // Calls `send` with the pixels, their width, their height and how many channels they have, if they are looked at.
    template <typename Send>
    Image sendBy(const Send& send) const
    {
        return withoutGil([&] {
            if (!m_Pixels.isLookedAt())
                return Image();
            return send(CopiedTuples<Pixels>(m_Pixels.copy()), static_cast<std::int64_t>(m_Pixels.getExtent(1)),
                static_cast<std::int64_t>(m_Pixels.getExtent(0)),
                m_HasChannels ? static_cast<int>(m_Pixels.getExtent(2)) : 1);
        });
    }

private:
    NumberArgument m_Pixels;
    bool m_HasChannels;
};

ImageHandle sendPixels(const std::string& name, const py::object& array)
{
    return {name, PixelArgument(array).sendBy(
                      [&](const Pixels& pixels, auto... shape) { return image(name, pixels, shape...); })};
}

ImageHandle& sendLayer(ImageHandle& handle, int index, const py::object& array)
{
    PixelArgument(array).sendBy(
        [&](const Pixels& pixels, auto... shape) { return handle.image.layer(index, pixels, shape...); });
    return handle;
}

ImageHandle sendStack(const std::string& name, const py::object& array)
{
    const NumberArgument pixels(array, "pixels");
    const std::size_t numDimensions = pixels.getNumDimensions();
    const bool hasChannels = numDimensions == 4 && pixels.getExtent(3) >= 1 && pixels.getExtent(3) <= 4;
    if (pixels.isLookedAt() && numDimensions != 3 && !hasChannels)
        pixels.refuseShape("(n, height, width) or (n, height, width, channels) of at most 4 channels");
    return {name, withoutGil([&] {
                if (!pixels.isLookedAt())
                    return Image();
                return imageStack(name, CopiedTuples<Pixels>(pixels.copy()),
                    static_cast<std::int64_t>(pixels.getExtent(2)), static_cast<std::int64_t>(pixels.getExtent(1)),
                    static_cast<int>(pixels.getExtent(0)), hasChannels ? static_cast<int>(pixels.getExtent(3)) : 1);
            })};
}

void addStack(py::module_& module, ImageClass& image)
{
    image.def("layer", &sendLayer, py::arg("index"), py::arg("pixels"), SAME_HANDLE,
        "Sends one image of a stack, counted from 0; the other ones stay, and may be of other sizes: pixels of shape "
        "(height, width) or (height, width, channels).");
    image.def(
        "layer_names",
        [](ImageHandle& handle, const std::vector<std::string>& names) -> ImageHandle& {
            handle.image.layerNames(names);
            return handle;
        },
        py::arg("names"), SAME_HANDLE, WithoutGil(), "What the images of a stack are called, from the first one on.");
    module.def("image_stack", &sendStack, py::arg("name"), py::arg("pixels"),
        "Sends images of one size, of which a slider chooses one: pixels of shape (n, height, width) or (n, height, "
        "width, channels).");
}

void addSwitch(ImageClass& image, const char* operation, const char* argument,
    Image (Image::*set)(bool, const Statement&) const, const char* doc)
{
    image.def(
        operation,
        [set](ImageHandle& handle, bool isOn) -> ImageHandle& {
            (handle.image.*set)(isOn, Statement());
            return handle;
        },
        py::arg(argument) = true, SAME_HANDLE, WithoutGil(), doc);
}

void addPair(ImageClass& image, const char* operation, Image (Image::*set)(double, double, const Statement&) const,
    const char* doc)
{
    image.def(
        operation,
        [set](ImageHandle& handle, double low, double high) -> ImageHandle& {
            (handle.image.*set)(low, high, Statement());
            return handle;
        },
        py::arg("low"), py::arg("high"), SAME_HANDLE, WithoutGil(), doc);
}

void addName(ImageClass& image, const char* operation, Image (Image::*set)(std::string_view, const Statement&) const,
    const char* doc)
{
    image.def(
        operation,
        [set](ImageHandle& handle, const std::string& name) -> ImageHandle& {
            (handle.image.*set)(name, Statement());
            return handle;
        },
        py::arg("name"), SAME_HANDLE, WithoutGil(), doc);
}

void addLooks(ImageClass& image)
{
    addSwitch(image, "bgr", "is_bgr", &Image::bgr, "The first and the third channel are blue and red.");
    addSwitch(image, "bottom_up", "is_bottom_up", &Image::bottomUp, "The first row is the lowest.");
    addPair(image, "range", &Image::range, "The numbers that are darkest and brightest.");
    addPair(image, "percentiles", &Image::percentiles,
        "The range is from the number below which that many per cent of all lie: percentiles(1, 99).");
    addName(image, "colour_map", &Image::colourMap,
        "The map from the numbers of one channel to colours, such as \"viridis\".");
    addName(image, "difference", &Image::difference,
        "Shows by how much the numbers are above those of another image of the same size; \"\" shows the image.");
    image.def(
        "gamma",
        [](ImageHandle& handle, double gamma) -> ImageHandle& {
            handle.image.gamma(gamma);
            return handle;
        },
        py::arg("gamma"), SAME_HANDLE, WithoutGil(), "Above 1 what is dark gets brighter, below 1 darker.");
    image.def(
        "channel",
        [](ImageHandle& handle, int channel) -> ImageHandle& {
            handle.image.channel(channel);
            return handle;
        },
        py::arg("channel"), SAME_HANDLE, WithoutGil(),
        "Shows one channel alone, counted from 0, or all of them together, with -1.");
    image.def(
        "link",
        [](ImageHandle& handle, const ImageHandle& other) -> ImageHandle& {
            handle.image.link(other.image);
            return handle;
        },
        py::arg("other"), SAME_HANDLE, WithoutGil(), "Shows the same part of both images.");
}

} // namespace

void addImage(py::module_& module)
{
    ImageClass image(module, "Image", madeByCalls(),
        "An image: pixels in a view of the window, as they are. image(name, pixels) makes it.\n\n"
        "Every operation returns the image, so that calls can be chained, and may be called by any thread.");
    addLooks(image);
    image.def("__repr__", [](const ImageHandle& handle) { return "vireo.image(" + quoted(handle.name) + ")"; });
    image.def("_repr_png_", [](const ImageHandle& handle) { return pngOf(handle.name); });
    addStack(module, image);
    module.def(
        "image",
        [](const std::string& name) {
            return ImageHandle{name, withoutGil([&] { return tavo::image(name); })};
        },
        py::arg("name"), "The image of that name, to which nothing is sent.");
    module.def("image", &sendPixels, py::arg("name"), py::arg("pixels"),
        "Sends an image: pixels of shape (height, width) or (height, width, channels), the top row first, in any type "
        "and layout; 1 to 4 channels: one number; two; red, green and blue; or these and opacity.\n\n"
        "    import numpy, vireo\n\n"
        "    depths = numpy.fromfunction(lambda y, x: x * y, (480, 640))\n"
        "    vireo.image(\"depth\", depths).colour_map(\"viridis\")\n"
        "    vireo.show()\n\n"
        "Bytes are from 0 to 255, colours in floats from 0 to 1.");
}

} // namespace tavo::python
