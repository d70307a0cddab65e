"""Shows what a running program has: curves, clouds, surfaces, volumes and images, in one window.

    import numpy, vireo

    t = numpy.linspace(0, 20, 2000)
    vireo.plot("pressure").curve("inlet", t, numpy.sin(t)).y_axis("pressure", "Pa")
    vireo.show()

Numbers are lists or numpy arrays of any type and layout. Calls come from any thread. A wrong type raises a TypeError;
any other mistake, such as x and y of different length, is a line in the log, and what was shown stays.

The environment variable VIREO_SHOW says what becomes of it all: "off" makes every call do nothing, "pictures:FOLDER"
saves a PNG of every view at the end and opens no window.
"""

import atexit as _atexit

from . import _qt

_qt.refuse_another()

from ._vireo import (  # noqa: E402
    Image,
    Item,
    Picked,
    Plot,
    Scene,
    SliceOverlay,
    Slices,
    Together,
    _stop_callbacks,
    clear,
    close_window,
    image,
    image_stack,
    open_window,
    plot,
    pump,
    remove,
    save_data,
    save_picture,
    save_pictures,
    scene,
    show,
    slices,
)

__all__ = [_name for _name in dir() if not _name.startswith("_")]

_qt.keep_matplotlib_apart()
_atexit.register(_stop_callbacks)
