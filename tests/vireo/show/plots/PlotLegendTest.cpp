#include "vireo/show/plots/PlotLegend.h"

#include <QApplication>
#include <QLineEdit>
#include <QMouseEvent>
#include <gtest/gtest.h>
#include <qwt_legend_label.h>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/plots/curves.h"
#include "vireo/show/plots/PlotView.h"

namespace tavo {

namespace {

class PlotLegendTest : public testing::Test
{
protected:
    PlotLegendTest()
    {
        m_View.resize(600, 400);
        m_View.show();
    }

    void send(int numCurves)
    {
        PlotUpdate update;
        for (int i = 0; i < numCurves; ++i) {
            const std::string name = "curve " + std::to_string(i);
            update.curve(name) = samples({0, 1}, {0, 1.0 + i});
            update.curves.back().name = name;
        }
        m_View.apply(update);
        QApplication::processEvents();
    }

    QwtLegendLabel* entry(const QString& name)
    {
        for (auto* label : m_View.findChildren<QwtLegendLabel*>())
            if (label->text().text() == name)
                return label;
        return nullptr;
    }

    static void doubleClick(QWidget* widget)
    {
        const QPoint place = widget->rect().center();
        clickMouse(widget);
        QMouseEvent event(QEvent::MouseButtonDblClick, place, Qt::LeftButton, Qt::LeftButton, {});
        QApplication::sendEvent(widget, &event);
        tavo::releaseMouse(widget, Qt::LeftButton, place);
    }

    double top() { return m_View.getSight().range(PlotSight::Y).to; }

    int numPixels(const QColor& colour, const QRect& within)
    {
        const QImage picture = m_View.grab().toImage();
        int number = 0;
        for (int y = within.top(); y <= within.bottom(); ++y)
            for (int x = within.left(); x <= within.right(); ++x)
                number += picture.pixelColor(x, y) == colour;
        return number;
    }

    QRect onView(const QWidget* widget) { return {widget->mapTo(&m_View, QPoint(0, 0)), widget->size()}; }

    int numShownEntries()
    {
        int number = 0;
        for (auto* label : m_View.findChildren<QwtLegendLabel*>())
            number += label->isVisible();
        return number;
    }

    PlotView m_View{"test"};
};

TEST_F(PlotLegendTest, ShowsWhatACurveLooksLike)
{
    std::vector<QImage> icons;
    for (const CurveKind kind :
        {CurveKind::Line, CurveKind::Line, CurveKind::Points, CurveKind::Bars, CurveKind::Band}) {
        PlotUpdate update;
        for (const char* name : {"a", "b"}) {
            update.curve(name) = samples({0, 1}, {1, 2}, kind);
            update.curves.back().name = name;
            update.curves.back().colour = QColor(Qt::magenta).rgba();
            update.curves.back().samples->low = numbers({0, 0});
        }
        update.curves.front().style = icons.empty() ? "dashed" : "";
        m_View.apply(update);
        icons.push_back(entry("a")->icon().toImage());
        EXPECT_GE(icons.back().width(), 16);
        for (std::size_t i = 0; i + 1 < icons.size(); ++i)
            EXPECT_NE(icons[i], icons.back()) << i << " and " << nameOf(kind);
    }
}

TEST_F(PlotLegendTest, AClickHidesACurveAndShowsItAgain)
{
    send(3);
    EXPECT_NEAR(top(), 3.15, 1e-9);
    clickMouse(entry("curve 2"));
    EXPECT_NEAR(top(), 2.1, 1e-9);
    send(4);
    EXPECT_NEAR(top(), 4.2, 1e-9);
    clickMouse(entry("curve 3"));
    EXPECT_NEAR(top(), 2.1, 1e-9) << "what was hidden stays hidden, whatever is sent";
    clickMouse(entry("curve 2"));
    EXPECT_NEAR(top(), 3.15, 1e-9);
}

TEST_F(PlotLegendTest, WhatIsHiddenCanAlwaysBeShownAgain)
{
    send(2);
    clickMouse(entry("curve 0"));
    PlotUpdate update;
    update.remove("curve 1");
    m_View.apply(update);
    ASSERT_NE(entry("curve 0"), nullptr);
    const double before = top();
    clickMouse(entry("curve 0"));
    EXPECT_NE(top(), before);
}

TEST_F(PlotLegendTest, ADoubleClickShowsOneAloneAndGoesBack)
{
    send(4);
    clickMouse(entry("curve 3"));
    doubleClick(entry("curve 0"));
    EXPECT_NEAR(top(), 1.05, 1e-9);
    doubleClick(entry("curve 0"));
    EXPECT_NEAR(top(), 3.15, 1e-9);
}

TEST_F(PlotLegendTest, AltAndAClickDoTheSame)
{
    send(3);
    for (const double expected : {1.05, 3.15}) {
        QMouseEvent event(QEvent::MouseButtonPress, QPoint(5, 5), Qt::LeftButton, Qt::LeftButton, Qt::AltModifier);
        QApplication::sendEvent(entry("curve 0"), &event);
        EXPECT_NEAR(top(), expected, 1e-9);
    }
}

TEST_F(PlotLegendTest, ThePointerLiftsACurve)
{
    PlotUpdate update;
    const QColor ink(1, 2, 3);
    update.curve("a") = samples({0, 1}, {1, 1});
    update.curves.back().name = "a";
    update.curves.back().colour = ink.rgb();
    m_View.apply(update);
    send(1);
    const QRect canvas = onView(m_View.findChild<QWidget*>("lift")->parentWidget());
    const int before = numPixels(ink, canvas);
    QEvent enter(QEvent::Enter);
    QApplication::sendEvent(entry("a"), &enter);
    EXPECT_GT(numPixels(ink, canvas), before + canvas.width());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(entry("a"), &leave);
    EXPECT_EQ(numPixels(ink, canvas), before);
}

TEST_F(PlotLegendTest, ManyEntriesHaveAFilter)
{
    auto* const filter = [this] { return m_View.findChild<QLineEdit*>("filter"); }();
    EXPECT_EQ(filter, nullptr);
    send(19);
    EXPECT_FALSE(m_View.findChild<QLineEdit*>("filter")->isVisible());
    send(31);
    ASSERT_TRUE(m_View.findChild<QLineEdit*>("filter")->isVisible());
    EXPECT_EQ(numShownEntries(), 31);
    m_View.findChild<QLineEdit*>("filter")->setText("CURVE 1");
    QApplication::processEvents();
    EXPECT_EQ(numShownEntries(), 11);
    send(101);
    EXPECT_EQ(numShownEntries(), 12) << "with curve 100";
    m_View.findChild<QLineEdit*>("filter")->clear();
    EXPECT_EQ(numShownEntries(), 101);
}

// Each entry has a mark of its curve's colour.
TEST_F(PlotLegendTest, APictureHasAllEntriesOrSaysHowManyAreMissing)
{
    constexpr int NUM_CURVES = 80;
    PlotUpdate update;
    for (int i = 0; i < NUM_CURVES; ++i) {
        const std::string name = "c" + std::to_string(i);
        update.curve(name) = samples({0, 1}, {NAN, NAN});
        update.curves.back().name = name;
        update.curves.back().colour = qRgb(200, i, 100);
    }
    m_View.apply(update);
    const auto numEntriesIn = [this](const QSize& size) {
        const QImage picture = m_View.picture(size);
        std::set<QRgb> colours;
        for (int y = 0; y < size.height(); ++y)
            for (int x = 0; x < size.width(); ++x)
                if (qRed(picture.pixel(x, y)) == 200 && qBlue(picture.pixel(x, y)) == 100)
                    colours.insert(picture.pixel(x, y));
        return static_cast<int>(colours.size());
    };
    EXPECT_EQ(numEntriesIn({1000, 700}), NUM_CURVES);
    m_View.findChild<QLineEdit*>("filter")->setText("c11");
    EXPECT_EQ(numEntriesIn({1000, 700}), NUM_CURVES) << "which is not filtered";
    m_View.findChild<QLineEdit*>("filter")->clear();
    const int numFewer = numEntriesIn({300, 300});
    EXPECT_GT(numFewer, 10);
    EXPECT_LT(numFewer, NUM_CURVES - 10);
}

} // namespace

} // namespace tavo
