# What benchmarks/peers measures the gridding engine against: the same points and nodes by NumPy and SciPy, and
# the contour lines of GDAL. usage: peers.py FOLDER BENCHMARKS.json
import json
import sys
import time

import numpy as np
from scipy.interpolate import LinearNDInterpolator, RBFInterpolator

folder = sys.argv[1]
points, side = 1000, 100
width, depth = 40.0, 25.0


def stored(name, count=points):
    return np.fromfile(f"{folder}/{name}.{count}")


x, y, value = stored("x"), stored("y"), stored("value")
places = np.column_stack([x, y])
nx = np.linspace(0.1, width - 0.1, side)
ny = np.linspace(0.1, depth - 0.1, side)
nodes = np.column_stack([np.tile(nx, side), np.repeat(ny, side)])


def distances(a, b):
    d = a[:, None, 0] - b[None, :, 0]
    e = a[:, None, 1] - b[None, :, 1]
    return np.sqrt(d * d + e * e)


def kriging():
    n = len(x)
    system = np.ones((n + 1, n + 1))
    system[:n, :n] = distances(places, places)
    system[n, n] = 0
    solution = np.linalg.solve(system, np.append(value, 0))
    return distances(nodes, places) @ solution[:n] + solution[n]


def thinplate():
    return RBFInterpolator(places, value, kernel="thin_plate_spline")(nodes)


def polynomial():
    def terms(a, b):
        return np.column_stack([np.ones_like(a), a, b, a * b])

    solution = np.linalg.lstsq(terms(x, y), value, rcond=None)[0]
    return terms(nodes[:, 0], nodes[:, 1]) @ solution


def radialbasis():
    s = np.hypot(np.ptp(x), np.ptp(y)) / np.sqrt(25 * len(x))
    return RBFInterpolator(places, value, kernel="multiquadric", epsilon=1 / s, degree=0)(nodes)


def shepard():
    def near(at, count):
        d = distances(at, places)
        order = np.argpartition(d, count, axis=1)[:, : count + 1]
        d = np.take_along_axis(d, order, 1)
        radius = d.max(axis=1, keepdims=True)
        return order, d, radius

    order, d, radius = near(places, 14)
    with np.errstate(divide="ignore"):
        root = np.where(d > 0, (radius - d) / (radius * d), 0)
    dx, dy = x[order] - x[:, None], y[order] - y[:, None]
    matrix = root[:, :, None] * np.stack([dx, dy, dx * dx, dx * dy, dy * dy], axis=2)
    right = root * (value[order] - value[:, None])
    c = np.linalg.solve(
        np.einsum("nki,nkj->nij", matrix, matrix), np.einsum("nki,nk->ni", matrix, right)[:, :, None]
    )[:, :, 0]
    order, d, radius = near(nodes, 19)
    weight = ((radius - d) / (radius * d)) ** 2
    dx, dy = nodes[:, :1] - x[order], nodes[:, 1:] - y[order]
    q = c[order]
    nodal = value[order] + dx * q[..., 0] + dy * q[..., 1]
    nodal += dx * dx * q[..., 2] + dx * dy * q[..., 3] + dy * dy * q[..., 4]
    return (weight * nodal).sum(axis=1) / weight.sum(axis=1)


def triangulation():
    return LinearNDInterpolator(places, value)(nodes)


def contours():
    from osgeo import gdal, ogr

    gdal.UseExceptions()
    field = stored("field", 500).reshape(500, 500)
    raster = gdal.GetDriverByName("MEM").Create("", 500, 500, 1, gdal.GDT_Float64)
    raster.SetGeoTransform((0, width / 499, 0, 0, 0, depth / 499))
    raster.GetRasterBand(1).WriteArray(field)
    low, high = field.min(), field.max()
    levels = [low + k * (high - low) / 16 for k in range(16)]

    def run():
        target = ogr.GetDriverByName("Memory").CreateDataSource("")
        layer = target.CreateLayer("lines")
        gdal.ContourGenerate(raster.GetRasterBand(1), 0, 0, levels, 0, 0, layer, -1, -1)
        return layer.GetFeatureCount()

    return run


def best(run, times=7):
    seconds = []
    for _ in range(times):
        start = time.perf_counter()
        result = run()
        seconds.append(time.perf_counter() - start)
    return min(seconds) * 1000, result


own = {}
for row in json.load(open(sys.argv[2]))["benchmarks"]:
    own[row["name"].removesuffix("/iterations:1")] = row["best_ms"]
    ownlines = int(row.get("lines", 0))

print(f"{'':24}{'own ms':>10}{'peer ms':>10}{'ratio':>8}  largest difference (values span {np.ptp(value):.1f})")
methods = [kriging, thinplate, polynomial, radialbasis, shepard, triangulation]
for number, method in enumerate(methods, 1):
    ours = own[f"gridding/method:{number}/points:{points}/side:{side}"]
    theirs, result = best(method)
    grid = stored(f"method{number}")
    blanked = grid > 1e38
    assert np.array_equal(blanked, np.isnan(result))
    difference = np.abs(grid - result)[~blanked].max()
    print(f"{method.__name__:24}{ours:10.2f}{theirs:10.2f}{ours / theirs:8.2f}  {difference:.1e}")
theirs, lines = best(contours())
ours = own["contouring"]
print(f"{'contours':24}{ours:10.2f}{theirs:10.2f}{ours / theirs:8.2f}  {ownlines} lines, {lines} by the peer")
for number, method in enumerate(methods, 1):
    print(f"{method.__name__} of 20000 points on 500 x 500: "
          f"{own[f'gridding/method:{number}/points:20000/side:500'] / 1000:.2f} s")
