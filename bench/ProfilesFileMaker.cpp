// SPDX-License-Identifier: MIT
// Writes a profiles file: profiles-file-maker COUNT FILE. For the measures that drive the whole program.
#include <cstdlib>
#include <fstream>
#include <iostream>

#include "bench/ManyProfiles.h"

int main(int argumentCount, char** argumentValues) {
    if (argumentCount != 3) {
        std::cerr << "usage: profiles-file-maker COUNT FILE\n";
        return 2;
    }
    const platform::Data bytes = bench::manyProfilesFile(std::atoll(argumentValues[1]));
    std::ofstream file(argumentValues[2], std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    return file ? 0 : 1;
}
