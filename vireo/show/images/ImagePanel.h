#pragma once

#include <QWidget>

class QComboBox;
class QDoubleSpinBox;
class QGridLayout;
class QPushButton;
class QTimer;

namespace tavo {

class ImageView;
class NumberBox;
class RangeHistogram;

// At the right of an image: how often numbers are where, and how they become colours.
class ImagePanel : public QWidget
{
    Q_OBJECT

public:
    explicit ImagePanel(ImageView& view);

    // Shows what has become of the image, a few times a second.
    void noteChange();

    // The width that it takes of a view.
    int widthIn(int widthOfView) const;

    bool eventFilter(QObject* object, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void layOut();
    void addRow(QGridLayout& grid, const QString& label, QWidget* field);
    void connectAll();
    void follow();
    void followRange();
    void followChannels();
    void chooseFixed(double from, double to);

    ImageView& m_View;
    QTimer* m_FollowSoon;
    RangeHistogram* m_Histogram;
    NumberBox* m_From;
    NumberBox* m_To;
    QPushButton* m_Automatic;
    QPushButton* m_Percentiles;
    QComboBox* m_Channel;
    QComboBox* m_ColourMap;
    QDoubleSpinBox* m_Gamma;
    QPushButton* m_Reset;
};

} // namespace tavo
