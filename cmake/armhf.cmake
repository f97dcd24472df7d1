# Toolchain: 32-bit ARM hard-float Linux with Debian's cross compiler, tests run under qemu-user.
#
#   cmake -S . -B build-armhf -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/armhf.cmake
#
# Libraries come from Debian's multiarch armhf packages (pugixml, GoogleTest in
# /usr/lib/arm-linux-gnueabihf, headers in /usr/include); header-only packages
# such as CLI11 are shared with the host. scripts/bootstrap armhf installs them.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)

set(PARAMS_ARMHF_TRIPLET arm-linux-gnueabihf)
set(CMAKE_C_COMPILER ${PARAMS_ARMHF_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${PARAMS_ARMHF_TRIPLET}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${PARAMS_ARMHF_TRIPLET})

# The multiarch layout lives in the host's own root: armhf libraries under
# /usr/lib/arm-linux-gnueabihf, the cross C library under /usr/arm-linux-gnueabihf.
set(CMAKE_FIND_ROOT_PATH /usr/${PARAMS_ARMHF_TRIPLET} /)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Never pick up the host's x86-64 libraries or package files by accident.
set(CMAKE_IGNORE_PATH /usr/lib/x86_64-linux-gnu /lib/x86_64-linux-gnu /usr/lib/x86_64-linux-gnu/cmake)

# CTest and gtest_discover_tests run every target program through the emulator.
# The programs run against the multiarch armhf runtime (libc6:armhf, installed with
# the armhf libraries at /lib/arm-linux-gnueabihf), not the cross root
# /usr/arm-linux-gnueabihf: that root's C library is an older build than the
# multiarch libstdc++ and GoogleTest expect, and starting a thread crashes with it.
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm)
