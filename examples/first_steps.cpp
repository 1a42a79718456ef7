#include <vorel/tessalo2d.h>

#include <cstdio>

int main()
{
    // One column a node, one column an element: a square, and a triangle with its last row unset.
    const vorel::dense2D<double> coords{{0, 0}, {1, 0}, {1, 1}, {0, 1}, {2, 0}};
    const vorel::dense2D<unsigned> connect{{0, 1, 2, 3}, {1, 4, 2, vorel::UNSET_ID}};

    double area = 0.0;
    const int status = vorel::tessalo2d::area(coords, connect, area);
    if (status != 0) return 1; // -k: argument k failed its check; -199: out of memory
    std::printf("area %g\n", area);
}
