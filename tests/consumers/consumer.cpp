// A user's program: data of its own goes in, a result comes out.
#include <vorel/tessalo2d.h>

#include <cstdio>
#include <string>

int main()
{
    const vorel::dense2D<double> coords{{0.0, 0.0}, {2.0, 0.0}, {2.0, 1.0}, {0.0, 1.0}};
    const vorel::dense2D<unsigned> connect{{0, 1, 2, 3}};
    double area = 0.0;
    const int status = vorel::tessalo2d::area(coords, connect, area);
    std::printf("tessalo2d %s: status %d, area %g\n", vorel::tessalo2d::version(), status, area);
    const bool checked = vorel::tessalo::check_IDs(connect, vorel::ELEMENT_Q4, 4) &&
                         !vorel::tessalo::check_IDs(connect, vorel::ELEMENT_Q4, 3);
    const bool right = std::string(vorel::tessalo2d::version()) == "5.1.0.0";
    return status == 0 && area == 2.0 && checked && right ? 0 : 1;
}
