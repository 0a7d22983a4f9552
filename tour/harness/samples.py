"""The form in which sound is played, recorded and compared."""

import numpy

RATE = 48000  # frames a second
CHANNELS = 2

Samples = numpy.ndarray  # one row a frame, one column a channel; full scale is 1
