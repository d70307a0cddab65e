#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QGridLayout;
class QPushButton;
class QTimer;

namespace tavo {

class NumberBox;
class RangeHistogram;
class ShownLayer;
class SlicesModel;
class SlicesView;
class ValueCounter;

// At the right of slices: how often numbers are where, how they become colours, and how slices are seen.
class SlicesPanel : public QWidget
{
    Q_OBJECT

public:
    explicit SlicesPanel(SlicesView& view);

    // Shows what has become of the slices: the numbers a few times a second.
    void noteChange();

    // The width that it takes of a view.
    int widthIn(int widthOfView) const;

    bool eventFilter(QObject* object, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void layOut();
    void connectAll();
    void connectOpacity(QDoubleSpinBox* box, ShownLayer& (SlicesModel::*layer)());
    void chooseWindow(double from, double to);
    void reset();
    void follow();
    void followSettings();

    SlicesView& m_View;
    QTimer* m_FollowSoon;
    ValueCounter* m_Counter;
    RangeHistogram* m_Histogram;
    NumberBox* m_From;
    NumberBox* m_To;
    QPushButton* m_Automatic;
    QComboBox* m_ColourMap;
    QCheckBox* m_Interpolated;
    QCheckBox* m_RightOnTheLeft;
    QCheckBox* m_FrontOnTheLeft;
    QDoubleSpinBox* m_OverlayOpacity;
    QDoubleSpinBox* m_LabelOpacity;
    QPushButton* m_Reset;
};

} // namespace tavo
