"""The gallery that `./demo` makes: pictures and meshes of what tessalo2d does, on real shapes.

    naca        wing sections by the published four-digit formula, and grids of them
    model       a surface from a file, welded and made of triangles
    record      timed calls, checked numbers, pictures and meshes with their captions
    draw        plane meshes with matplotlib
    render      surfaces with hidden parts hidden
    page        the index page

    structured, splitting, order, transfer, extrusion, surface, curvature, repair
                the families: one module each, one function a picture

Run from the folder above, with the module tessalo2d on PYTHONPATH:

    python3 -m gallery structured --out build/gallery
"""
