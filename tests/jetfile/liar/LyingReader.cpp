// SPDX-License-Identifier: Apache-2.0
// Stands in for orvale-jet-reader: says what follows the first page of the file, whatever that is.
#include <fstream>
#include <iostream>

int main(int argc, char *argv[])
{
    if (argc != 2)
        return 2;
    std::ifstream file(argv[1], std::ios::binary);
    file.seekg(4096);
    std::cout << file.rdbuf();
    return 0;
}
