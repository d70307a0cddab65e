#pragma once

namespace tavo {

// Enters the three button images in Qt's resources, under ":/vireo/Images/Buttons/".
void registerButtonImages();

} // namespace tavo
