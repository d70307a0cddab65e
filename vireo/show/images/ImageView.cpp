#include "vireo/show/images/ImageView.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <unordered_map>
#include <utility>

#include "tavo/base/debug/displayException.h"
#include "tavo/base/text/printable.h"
#include "vireo/show/delivery/sayOnce.h"
#include "vireo/show/images/ImageGestures.h"
#include "vireo/show/images/ImageLinks.h"
#include "vireo/show/images/ImagePanel.h"
#include "vireo/show/images/LayerSlider.h"
#include "vireo/show/images/gesturesOfImages.h"
#include "vireo/show/images/imageData.h"
#include "vireo/show/scenes/colourBar.h"
#include "vireo/show/window/shownText.h"
#include "vireo/show/window/windowMemory.h"

namespace tavo {

namespace {

constexpr std::size_t LONGEST_NAME = 80;
constexpr int MARGIN = 4;       // in pixels, of the text below the image
constexpr int LARGE_VIEW = 900; // in pixels, from which on the panel is there unless a person has hidden it

using Views = std::unordered_multimap<std::string, ImageView*>;

Views& allViews()
{
    static Views views;
    return views;
}

// Null if there is none of that name.
ImageView* viewOf(const std::string& name)
{
    const auto found = allViews().find(name);
    return found != allViews().end() ? found->second : nullptr;
}

ImageLinks& allLinks()
{
    static ImageLinks links;
    return links;
}

const char* nameOfType(const NumberArray& numbers)
{
    return numbers.visit([](const auto* number, std::size_t) -> const char* {
        using T = std::decay_t<decltype(*number)>;
        constexpr int BITS = 8 * sizeof(T);
        if (std::is_floating_point_v<T>)
            return BITS == 32 ? "float" : "double";
        constexpr const char* NAMES[][2] = {
            {"uint8", "int8"}, {"uint16", "int16"}, {"uint32", "int32"}, {"uint64", "int64"}};
        return NAMES[BITS == 8 ? 0 : BITS == 16 ? 1 : BITS == 32 ? 2 : 3][std::is_signed_v<T> ? 1 : 0];
    });
}

// What a bar of colours is from and to. Integers that no double tells apart are counted from the least.
struct BarRange
{
    double from;
    double to;
    QString offset = {};
};

BarRange barRange(const ImageLook& look)
{
    const auto from = static_cast<double>(look.from);
    const auto to = static_cast<double>(look.to);
    const long double least = std::floor(std::min(look.from, look.to));
    const bool isExact = from == look.from && to == look.to;
    if (isExact || std::abs(least) > static_cast<long double>(std::numeric_limits<std::uint64_t>::max()))
        return {from, to};
    const QString digits = least < 0 ? QString::number(static_cast<qlonglong>(least))
                                     : "+" + QString::number(static_cast<qulonglong>(least));
    return {static_cast<double>(look.from - least), static_cast<double>(look.to - least), digits};
}

QRectF barIn(const QRectF& place, double line)
{
    constexpr double WIDTH = 14;
    return {place.left() + line, place.top() + 3 * line, WIDTH, place.height() - 5 * line};
}

QString counted(std::size_t number, const QString& what)
{
    return number > 0 ? QString(", %1 %2").arg(number).arg(what) : QString();
}

} // namespace

ImageView::ImageView(const std::string& name)
    : m_Name(name)
    , m_Profile(name)
    , m_LayerSlider(new LayerSlider(*this))
    , m_Panel(new ImagePanel(*this))
{
    m_Panel->hide();
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(40, 30);
    m_Gestures = std::make_unique<ImageGestures>(*this);
    allViews().emplace(m_Name, this);
}

ImageView::~ImageView()
{
    const auto [first, last] = allViews().equal_range(m_Name);
    allViews().erase(std::find_if(first, last, [this](const auto& entry) { return entry.second == this; }));
    allLinks().removeFrom(m_Name);
    followDifferences();
}

void ImageView::makeRoom(const Replaced& replaced)
{
    if (replaced.isAll) {
        m_Stack.makeRoom();
        m_Model.makeRoom();
    }
}

void ImageView::apply(ViewUpdate& update)
{
    auto& image = static_cast<ImageUpdate&>(update);
    if (image.pixels)
        sayWhatIsLeft(*image.pixels);
    const bool isOther = m_Stack.apply(image);
    image.pixels = isOther ? std::optional(m_Stack.pixels()) : std::nullopt;
    for (const std::string& other : image.links)
        allLinks().add(m_Name, other);
    m_Model.apply(image);
    if (image.difference)
        m_Difference = *image.difference;
    if (!m_Difference.empty() || m_Model.isDifference())
        takeDifference();
    followPixels();
    changed();
    if (const ImageView* const chosen = chosenAmong(image.links))
        setSight(chosen->m_Sight);
}

void ImageView::followPixels()
{
    m_Profile.follow(m_Model.shownPixels());
    followDifferences();
}

void ImageView::showLayer(int layer)
{
    for (ImageView* view : linkedViews())
        view->takeLayer(layer);
}

// The next level of a texture is half as large; the part that is seen stays the same, unless links say what it is.
void ImageView::takeLayer(int layer)
{
    const QSizeF before = imageSize();
    if (!m_Stack.show(layer))
        return;
    m_Model.setPixels(m_Stack.pixels());
    if (m_IsChosen && !before.isEmpty() && !imageSize().isEmpty() && linkedViews().size() == 1)
        m_Sight.adapt(before, imageSize());
    followPixels();
    changed();
}

// The first one of those whose part a person has chosen. All that were linked before show the same part, so that one of
// them stands for all.
const ImageView* ImageView::chosenAmong(const std::vector<std::string>& linked) const
{
    if (m_IsChosen && !linked.empty())
        return this;
    for (const std::string& name : linked)
        if (const ImageView* const view = viewOf(name); view && view->m_IsChosen)
            return view;
    return nullptr;
}

// Those that show their difference from this one.
void ImageView::followDifferences()
{
    for (const auto& [name, view] : allViews())
        if (view != this && view->m_Difference == m_Name) {
            view->takeDifference();
            view->m_Profile.follow(view->m_Model.shownPixels());
            view->changed();
        }
}

void ImageView::takeDifference()
{
    ImageView* const other = m_Difference != m_Name ? viewOf(m_Difference) : nullptr;
    m_Model.setOther(other ? std::optional(other->getModel().pixels()) : std::optional<ImagePixels>());
    if (other && !other->getModel().pixels().isEmpty() && !m_Model.pixels().isEmpty())
        sayWhyNoDifference();
}

// The other image may come later: that there is none is a mistake where a picture is wanted.
void ImageView::sayWhyNoDifference() const
{
    if (!m_Difference.empty() && !m_Model.isDifference())
        sayOnce("image(\"" + printable(m_Name, LONGEST_NAME) + "\"): \"" + printable(m_Difference, LONGEST_NAME) +
                "\" is no other image of as many pixels and channels, so that there is no difference; the image itself "
                "is shown");
}

// Somebody may have forgotten the channels. Rows with a stride may end with anything.
void ImageView::sayWhatIsLeft(const ImagePixels& pixels) const
{
    const auto numPixels = static_cast<std::size_t>(pixels.width) * static_cast<std::size_t>(pixels.height);
    const auto channels = static_cast<std::size_t>(pixels.channels);
    const std::size_t numNumbers = pixels.numbers.size();
    const bool hasStride = pixels.rowStride != static_cast<std::size_t>(pixels.width) * channels;
    if (hasStride || numNumbers <= numPixels * channels)
        return;
    std::string text = "image(\"" + printable(m_Name, LONGEST_NAME) + "\"): " + std::to_string(numNumbers) +
                       " numbers are more than " + std::to_string(pixels.width) + " x " +
                       std::to_string(pixels.height) + " pixels of " + std::to_string(channels) +
                       (channels == 1 ? " channel" : " channels") + " have; the first of them are shown";
    if (numNumbers % numPixels == 0 && numNumbers / numPixels <= 4)
        text += " (are there " + std::to_string(numNumbers / numPixels) + " channels?)";
    sayOnce(text);
}

std::vector<ImageView*> ImageView::linkedViews()
{
    std::vector<ImageView*> linked;
    for (const std::string& name : allLinks().linkedTo(m_Name, [](const std::string& other) { return viewOf(other); }))
        linked.push_back(name == m_Name ? this : viewOf(name));
    return linked;
}

void ImageView::changed()
{
    m_Drawn.reset();
    m_LayerSlider->follow(m_Stack, imageWidth(), height() - barHeight());
    m_Panel->noteChange();
    if (!m_IsChosen)
        m_Sight = sightFor(sightSize());
    update();
}

ImageSight ImageView::sightFor(const QSize& size) const
{
    return m_IsChosen ? m_Sight : ImageSight::fitting(imageSize(), size);
}

QSize ImageView::imageSize() const
{
    return {m_Model.pixels().width, m_Model.pixels().height};
}

void ImageView::setSight(const ImageSight& sight)
{
    for (ImageView* view : linkedViews()) {
        view->m_Sight = sight;
        view->m_Sight.keepInView(view->imageSize());
        view->m_IsChosen = true;
        view->update();
    }
}

void ImageView::showAll()
{
    for (ImageView* view : linkedViews()) {
        view->m_IsChosen = false;
        view->changed();
    }
}

ImageChoice ImageView::choice() const
{
    return {m_IsChosen ? std::optional(m_Sight) : std::nullopt, m_Model.getChoice()};
}

void ImageView::goTo(const std::optional<ImageChoice>& choice)
{
    if (!choice)
        return;
    m_Model.choose(choice->settings);
    changed();
    if (choice->sight)
        setSight(*choice->sight);
    else
        showAll();
}

void ImageView::choose(const std::function<void(ImageSettings& choice)>& change)
{
    remember(ImageHistory::Gesture::Colours);
    ImageSettings choice = m_Model.getChoice();
    change(choice);
    m_Model.choose(choice);
    changed();
}

void ImageView::showNextChannel()
{
    const ImagePixels& pixels = m_Model.shownPixels();
    const int next = m_Model.look().channel + 1;
    choose([&](ImageSettings& choice) {
        choice.channel = next < pixels.channels ? next : pixels.hasColours() ? -1 : 0;
    });
}

void ImageView::refreshRange()
{
    m_Model.refreshRange();
    changed();
}

int ImageView::barHeight() const
{
    return fontMetrics().height() + MARGIN;
}

QSize ImageView::sightSize() const
{
    const QSizeF size(imageWidth(), imageHeight());
    return (size * devicePixelRatioF()).toSize();
}

// Of the widget without the panel.
int ImageView::imageWidth() const
{
    return std::max(width() - (isPanelShown() ? m_Panel->width() : 0), 1);
}

// Of the widget without what stands below the image.
int ImageView::imageHeight() const
{
    return std::max(height() - barHeight() - m_LayerSlider->heightInView(), 1);
}

bool ImageView::isPanelShown() const
{
    return !m_Panel->isHidden();
}

void ImageView::switchPanel()
{
    m_IsPanelWanted = !isPanelShown();
    if (m_Panel->isAncestorOf(focusWidget()))
        setFocus();
    settlePanel();
    windowMemory::remember(windowMemory::Thing::ImagePanel, isPanelShown() ? "shown" : "hidden");
}

std::function<void()> ImageView::configuration()
{
    return [this] { switchPanel(); };
}

void ImageView::settlePanel()
{
    const int panelWidth = m_Panel->widthIn(width());
    m_Panel->setGeometry(width() - panelWidth, 0, panelWidth, height());
    m_Panel->setVisible(m_IsPanelWanted.value_or(width() >= LARGE_VIEW));
    changed();
}

void ImageView::showProfile(const QPoint& from, const QPoint& to)
{
    constexpr QPointF MIDDLE(0.5, 0.5);
    m_Profile.setLine({from + MIDDLE, to + MIDDLE}, m_Model.shownPixels());
    update();
}

bool ImageView::endProfile()
{
    update();
    return m_Profile.clear();
}

ImageInk ImageView::ink() const
{
    return {palette().color(QPalette::Base), palette().color(QPalette::Mid), font()};
}

QImage ImageView::picture(QSize size)
{
    sayWhyNoDifference();
    const QSize sizeOfImage = sizeInPicture(size);
    QImage drawn = drawImage(m_Model.levels(), m_Model.colours(), sightFor(sizeOfImage), sizeOfImage, ink());
    if (sizeOfImage == size)
        return drawn;
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(ink().ground);
    QPainter painter(&picture);
    painter.drawImage(0, 0, drawn);
    paintColourBar(painter, QRectF(sizeOfImage.width(), 0, size.width() - sizeOfImage.width(), size.height()));
    return picture;
}

// Without the colour bar that large pictures of one channel have at their right.
QSize ImageView::sizeInPicture(const QSize& size) const
{
    constexpr int LETTERS = 13;     // of the bar and its numbers, mostly
    constexpr int LEAST_PART = 5;   // of the picture, at most
    constexpr int LEAST_LINES = 10; // in height
    const BarRange range = barRange(m_Model.look());
    if (m_Model.pixels().isEmpty() || m_Model.look().isColour() || !std::isfinite(range.to - range.from))
        return size;
    const double line = fontMetrics().height();
    const double numbers = widthOfColourBar(
        barIn(QRectF(QPointF(), size), line), range.from, range.to, range.offset, QFontMetricsF(font()));
    const int usual = LETTERS * fontMetrics().averageCharWidth();
    const int width = std::max(static_cast<int>(std::ceil(numbers + 1.5 * line)), usual);
    const bool hasBar = size.width() >= std::max(LEAST_PART * usual, 2 * width) && size.height() >= LEAST_LINES * line;
    return hasBar ? QSize(size.width() - width, size.height()) : size;
}

void ImageView::paintColourBar(QPainter& painter, const QRectF& place) const
{
    const BarRange range = barRange(m_Model.look());
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::Text));
    drawColourBar(
        painter, barIn(place, fontMetrics().height()), m_Model.colours().map(), range.from, range.to, range.offset);
}

std::vector<Gesture> ImageView::gestures() const
{
    return gesturesOfImages();
}

std::string ImageView::saveData(const QString& file)
{
    return saveImage(file, m_Model.pixels());
}

std::optional<QPoint> ImageView::pixelAt(const QPointF& place) const
{
    const QPointF point = m_Sight.toImage(onScreen(place), sightSize());
    const QPoint pixel(static_cast<int>(std::floor(point.x())), static_cast<int>(std::floor(point.y())));
    if (!m_Model.pixels().isInside(pixel.x(), pixel.y()) || place.y() >= imageHeight() || place.x() >= imageWidth())
        return {};
    return pixel;
}

void ImageView::hover(const std::optional<QPoint>& pixel)
{
    for (ImageView* view : linkedViews()) {
        view->m_Hovered = pixel;
        view->update();
    }
}

QString ImageView::textOfPixel() const
{
    constexpr int DIGITS_OF_FLOAT = 9;
    constexpr int DIGITS_OF_DOUBLE = 17;
    const ImagePixels& pixels = m_Model.shownPixels();
    if (!m_Hovered || !pixels.isInside(m_Hovered->x(), m_Hovered->y()))
        return {};
    const int digits = nameOfType(pixels.numbers) == std::string("float") ? DIGITS_OF_FLOAT : DIGITS_OF_DOUBLE;
    QString text = QString("%1, %2:").arg(m_Hovered->x()).arg(m_Hovered->y());
    for (int channel = 0; channel < pixels.channels; ++channel)
        text += "  " + textOfNumber(pixels, m_Hovered->x(), m_Hovered->y(), channel, digits);
    return text;
}

QString ImageView::textOfImage() const
{
    const ImagePixels& pixels = m_Model.pixels();
    if (pixels.isEmpty())
        return {};
    QString text = QString("%1 x %2, ").arg(pixels.width).arg(pixels.height);
    if (pixels.channels > 1)
        text += QString("%1 x ").arg(pixels.channels);
    text += nameOfType(pixels.numbers);
    if (m_Model.look().channel >= 0 && pixels.channels > 1)
        text += tr(", channel %1").arg(m_Model.look().channel);
    if (m_Model.isDifference())
        text += tr(", difference");
    else if (!m_Difference.empty())
        text += tr(", no difference from %1").arg(shownText(m_Difference, LONGEST_NAME));
    text += counted(m_Model.statistics().numNaN, "NaN") + counted(m_Model.statistics().numInfinite, tr("infinite"));
    return text + QString(", %1 %").arg(100 * m_Sight.scale, 0, 'g', 3 + (m_Sight.scale >= 10 ? 2 : 0));
}

void ImageView::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        changed();
    View::changeEvent(event);
}

void ImageView::resizeEvent(QResizeEvent* event)
{
    settlePanel();
    View::resizeEvent(event);
}

void ImageView::showEvent(QShowEvent* event)
{
    View::showEvent(event);
    const QByteArray remembered = windowMemory::recall(windowMemory::Thing::ImagePanel);
    if (!m_IsPanelWanted && !remembered.isEmpty())
        m_IsPanelWanted = remembered == "shown";
    settlePanel();
}

void ImageView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (isPaintedAtOnce(m_Sight)) {
        runGuarded([&] { paintSight(painter); });
    } else {
        runGuarded([this] { draw(); });
        painter.drawImage(QPoint(0, 0), m_Picture);
    }
    paintProfile(painter);
    paintMark(painter);
    paintBar(painter);
}

// In pixels of the screen.
void ImageView::paintSight(QPainter& painter) const
{
    painter.save();
    painter.scale(1 / devicePixelRatioF(), 1 / devicePixelRatioF());
    paintImage(painter, sightSize(), m_Model.shownPixels(), m_Model.colours(), m_Sight, ink());
    painter.restore();
}

// The memory is that of the last picture: new memory would cost as much as the drawing.
void ImageView::draw()
{
    const QSize size = sightSize();
    const bool isOfSize = m_Picture.size() == size;
    if (isOfSize && m_Drawn == m_Sight)
        return;
    if (!isOfSize)
        m_Picture = QImage(size, QImage::Format_RGB32);
    const std::optional<ImageSight> before = isOfSize ? std::exchange(m_Drawn, std::nullopt) : std::nullopt;
    m_Picture.setDevicePixelRatio(1);
    if (before)
        moveImage(m_Picture, *before, m_Model.levels(), m_Model.colours(), m_Sight, ink());
    else
        drawImage(m_Picture, m_Model.levels(), m_Model.colours(), m_Sight, ink());
    m_Picture.setDevicePixelRatio(devicePixelRatioF());
    m_Drawn = m_Sight;
}

// Where the pointer is, in this image or one that is linked to it.
void ImageView::paintMark(QPainter& painter) const
{
    if (!m_Hovered)
        return;
    const double scale = m_Sight.scale / devicePixelRatioF();
    const QPointF corner = onWidget(QPointF(*m_Hovered));
    const double side = std::max(scale, 5.0);
    const QRectF square(corner.x() + (scale - side) / 2, corner.y() + (scale - side) / 2, side, side);
    painter.setPen(Qt::white);
    painter.drawRect(square.adjusted(-1, -1, 0, 0));
    painter.setPen(Qt::black);
    painter.drawRect(square.adjusted(-2, -2, 1, 1));
}

QPointF ImageView::onWidget(const QPointF& point) const
{
    return m_Sight.toView(point, sightSize()) / devicePixelRatioF();
}

void ImageView::paintProfile(QPainter& painter) const
{
    if (!m_Profile.line())
        return;
    const QLineF line(onWidget(m_Profile.line()->p1()), onWidget(m_Profile.line()->p2()));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (const QPen& pen : {QPen(Qt::black, 3), QPen(Qt::white, 1)}) {
        painter.setPen(pen);
        painter.drawLine(line);
    }
    painter.restore();
}

void ImageView::paintBar(QPainter& painter) const
{
    const QRect bar(0, height() - barHeight(), imageWidth(), barHeight());
    painter.fillRect(bar, palette().color(QPalette::Window));
    painter.setPen(palette().color(QPalette::WindowText));
    const QRect inside = bar.adjusted(MARGIN, 0, -MARGIN, 0);
    const QString pixel = textOfPixel();
    painter.drawText(inside, Qt::AlignLeft | Qt::AlignVCenter, pixel);
    const QString about = textOfImage();
    if (fontMetrics().horizontalAdvance(pixel) + fontMetrics().horizontalAdvance(about) + 4 * MARGIN < inside.width())
        painter.drawText(inside, Qt::AlignRight | Qt::AlignVCenter, about);
}

} // namespace tavo
