#pragma once

#include "vireo/Library.h" // where start-up lives now; this header stays for sources that include it here
