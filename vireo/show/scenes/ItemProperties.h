#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "vireo/show/scenes/ItemChoice.h"
#include "vireo/show/scenes/ItemState.h"
#include "vireo/show/scenes/RangeHistogram.h"
#include "vireo/show/scenes/SceneItem.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QGridLayout;
class QLabel;
class QPushButton;
class QSlider;
class QSpinBox;

namespace tavo {

class NumberBox;
class OpacityEditor;
class TransferFunctionFiles;
class ValueCounter;

// How the selected item of a scene is shown, for a person to choose: what is coloured by, the colour map and its range,
// sizes, opacity. Only what the item can have is there.
class ItemProperties : public QWidget
{
    Q_OBJECT

public:
    // Changes what has been chosen of the item, which is shown like that.
    using Change = std::function<void(ItemChoice& choice, const ItemState& state)>;

    explicit ItemProperties(QWidget* parent = nullptr);

    // Of a path, at which there may be an item; null if there is none. `areAnyChosen` says whether there is anything to
    // reset.
    void show(const std::string& path, const SceneItem* item, bool areAnyChosen);
    void showNothing();

    // Of the largest that it gets.
    QSize sizeHint() const override { return m_LargestSize; }

    bool eventFilter(QObject* object, QEvent* event) override;

signals:
    void choiceMade(const ItemProperties::Change& change);
    void resetWanted();

private:
    QWidget* makeRange();
    QWidget* makeOpacity();
    QWidget* makeFaces();
    void makeVolume();
    void connectVolume();
    void showVolume(const ItemState& state);
    void makeRows();
    void addRow(QWidget* field, const QString& label = {});
    QLabel* labelOf(QWidget* field) const;
    void connectAll();
    void showItem(const SceneItem& item);
    void showSize(const ItemState& state);
    void showColour(const SceneItem& item, const ItemState& state);
    void chooseColour();
    void showFields(const ItemState& state);
    void showNumbers(const ItemState& state, std::size_t revision);
    void showCounts(const ValueCounts& counts);
    void forgetCounts();
    void setRowVisible(QWidget* field, bool isVisible);
    void chooseRange(const std::function<RangeHistogram::Range(const ItemState& state)>& rangeOf);
    void chooseOpacity(int percent);

    std::size_t m_CountedRevision = 0; // of the item whose values are counted
    std::string m_CountedField;        // with the path of the item
    ValueCounter* m_Counter;
    std::string m_Path;                    // of what is shown
    std::vector<std::string> m_ShownNames; // in the order of the combo box

    QGridLayout* m_Grid;
    QSize m_LargestSize; // when all of it is there
    QLabel* m_Name;
    QComboBox* m_Field;
    QComboBox* m_Scale;
    QPushButton* m_Colour;
    QColor m_ShownColour;
    QComboBox* m_ColourMap;
    QWidget* m_Range;
    RangeHistogram* m_Histogram;
    NumberBox* m_From;
    NumberBox* m_To;
    QPushButton* m_Whole;
    QPushButton* m_Middle;
    QComboBox* m_Preset;
    OpacityEditor* m_Opacities;
    TransferFunctionFiles* m_FunctionFiles;
    QCheckBox* m_Maximum;
    QCheckBox* m_Light;
    QDoubleSpinBox* m_Size;
    QWidget* m_OpacityRow;
    QSlider* m_OpacitySlider;
    QSpinBox* m_Opacity;
    QComboBox* m_Shading;
    QWidget* m_Faces;
    QCheckBox* m_Edges;
    QCheckBox* m_BackFaces;
    QPushButton* m_Reset;
};

} // namespace tavo
