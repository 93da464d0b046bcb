# Another machine than the one that builds, with Debian's cross compilers: what is built runs under QEMU. The toolchains
# of the machines name the processor and include this.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${CMAKE_SYSTEM_PROCESSOR}-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER ${CMAKE_SYSTEM_PROCESSOR}-linux-gnu-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${CMAKE_SYSTEM_PROCESSOR}-static)
