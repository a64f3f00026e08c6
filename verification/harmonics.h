// Spherical harmonics by their definition, for whoever compares with them.
#pragma once

namespace orv::verification {

// The real spherical harmonic of an AmbiX channel number (ACN, from 0) in SN3D normalisation without the
// Condon-Shortley phase, in the direction of azimuth and sine of elevation (C. Nachbar, F. Zotter, E.
// Deleflie, A. Sontacchi: ambiX, 2011).
double harmonicof(int acn, double azimuth, double sine);

// The order of a channel number.
int orderof(int acn);

} // namespace orv::verification
