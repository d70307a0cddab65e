#include "vireo/show/scenes/panelWidgets.h"

#include <QAbstractItemView>
#include <QStyledItemDelegate>
#include <vector>

#include "vireo/show/colours/ColourMap.h"
#include "vireo/show/scenes/colourIcon.h"

namespace tavo {

namespace {

// Its list has the colours of the window, whose theme may not be the program's.
class ComboBox : public QComboBox
{
public:
    ComboBox() { setItemDelegate(new QStyledItemDelegate(this)); } // the box's own has the colours of menus

    void showPopup() override
    {
        view()->window()->setPalette(palette());
        view()->setPalette(palette());
        QComboBox::showPopup();
    }
};

} // namespace

QComboBox* makeComboBox(const char* name, const QString& accessibleName, const QString& toolTip)
{
    auto* const box = made(new ComboBox, name, accessibleName, toolTip);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(6);
    box->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    return box;
}

void addColourMaps(QComboBox& box)
{
    constexpr QSize ICON(56, 12);
    constexpr std::size_t STEP = 15;
    box.setIconSize(ICON);
    for (const std::string_view name : namesOfColourMaps()) {
        const ColourMap::Entries entries = findColourMap(name)->entries();
        std::vector<RGBA8> colours;
        for (std::size_t i = 0; i < entries.size(); i += STEP)
            colours.push_back(entries[i]);
        box.addItem(colourIcon(colours), QString::fromUtf8(name.data(), static_cast<int>(name.size())));
    }
}

void chooseQuietly(QComboBox* box, int index)
{
    const QSignalBlocker quiet(box);
    if (box->currentIndex() != index)
        box->setCurrentIndex(index);
}

} // namespace tavo
