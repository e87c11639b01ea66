// Uses the pixel library twice and says what came of it, for tests of the loader.

#include <iostream>
#include <pixels_loader.h>

int main()
{
    for (int attempt = 0; attempt < 2; ++attempt) {
        try {
            const std::size_t pixels = pixels::library().coverage({}, {4, 3}).values.size();
            std::cout << "loaded, matte of " << pixels << " pixels\n";
        } catch (const pixels::LoadError& error) {
            std::cout << error.what() << '\n';
        }
    }
}
