# Measures recordings of voices, a line of figures for each: `praat --run voices.praat LIST`, where LIST is a text file
# that names a sound file in each line. The first line of the output names the columns.
form Measure voices
    sentence List
endform

files = Read Strings from raw text file: list$
count = Get number of strings
writeInfoLine: "file", tab$, "seconds", tab$, "rise", tab$, "f0", tab$, "range", tab$, "jitter", tab$, "shimmer", tab$,
... "hnr", tab$, "f1", tab$, "f2", tab$, "f3", tab$, "move1", tab$, "move2", tab$, "b1", tab$, "voiced", tab$, "top"

for index to count
    selectObject: files
    name$ = Get string: index
    both = Read from file: name$
    seconds = Get total duration
    sound = Convert to mono
    call measure
    appendInfoLine: name$, tab$, fixed$ (seconds, 3), tab$, fixed$ (1000 * rise, 0), tab$, fixed$ (f0, 0), tab$,
    ... fixed$ (range, 1), tab$, fixed$ (100 * jitter, 2), tab$, fixed$ (100 * shimmer, 1), tab$, fixed$ (hnr, 1), tab$,
    ... fixed$ (f1, 0), tab$, fixed$ (f2, 0), tab$, fixed$ (f3, 0), tab$, fixed$ (move1, 0), tab$, fixed$ (move2, 0),
    ... tab$, fixed$ (b1, 0), tab$, fixed$ (100 * voiced, 0), tab$, fixed$ (top, 1)
    removeObject: both, sound
endfor

procedure measure
    # Seconds from 20 dB below the loudest moment to that moment.
    selectObject: sound
    intensity = To Intensity: 100, 0.005, "yes"
    loudest = Get maximum: 0, 0, "none"
    peakTime = Get time of maximum: 0, 0, "none"
    frames = Get number of frames
    first = 1
    value = Get value in frame: first
    while first < frames and (value = undefined or value < loudest - 20)
        first += 1
        value = Get value in frame: first
    endwhile
    firstTime = Get time from frame number: first
    rise = max (0, peakTime - firstTime)

    # Share of the moments that have a pitch; pitch in hertz; its range in semitones without the outer twentieths.
    selectObject: sound
    thin = Resample: 16000, 20
    pitch = To Pitch (cc): 0.01, 60, 15, "no", 0.03, 0.45, 0.01, 0.35, 0.14, 1200
    f0 = Get quantile: 0, 0, 0.5, "Hertz"
    low = Get quantile: 0, 0, 0.05, "Hertz"
    high = Get quantile: 0, 0, 0.95, "Hertz"
    range = 12 * log2 (high / low)
    pitched = Count voiced frames
    frames = Get number of frames
    voiced = pitched / frames

    selectObject: sound, pitch
    pulses = To PointProcess (cc)
    jitter = Get jitter (local): 0, 0, 0.0001, 0.02, 1.3
    selectObject: sound, pulses
    shimmer = Get shimmer (local): 0, 0, 0.0001, 0.02, 1.3, 1.6

    selectObject: sound
    harmonicity = To Harmonicity (cc): 0.02, 60, 0.1, 1
    hnr = Get mean: 0, 0

    # Resonances where there is a pitch; how far the lower two move in 10 ms; the width of the first.
    selectObject: sound
    formant = To Formant (burg): 0.01, 5, 5500, 0.025, 50
    formants# = zero# (5)
    steps = 0
    voicedFrames = 0
    frames = Get number of frames
    v1# = zero# (frames)
    v2# = zero# (frames)
    v3# = zero# (frames)
    w1# = zero# (frames)
    d1# = zero# (frames)
    d2# = zero# (frames)
    last1 = undefined
    last2 = undefined
    for frame to frames
        selectObject: formant
        time = Get time from frame number: frame
        selectObject: pitch
        hertz = Get value at time: time, "Hertz", "nearest"
        selectObject: formant
        now1 = Get value at time: 1, time, "hertz", "linear"
        now2 = Get value at time: 2, time, "hertz", "linear"
        now3 = Get value at time: 3, time, "hertz", "linear"
        width = Get bandwidth at time: 1, time, "hertz", "linear"
        if hertz <> undefined and now1 <> undefined and now2 <> undefined and now3 <> undefined
            voicedFrames += 1
            v1# [voicedFrames] = now1
            v2# [voicedFrames] = now2
            v3# [voicedFrames] = now3
            w1# [voicedFrames] = width
            if last1 <> undefined
                steps += 1
                d1# [steps] = abs (now1 - last1)
                d2# [steps] = abs (now2 - last2)
            endif
            last1 = now1
            last2 = now2
        else
            last1 = undefined
        endif
    endfor
    values# = v1#
    call median voicedFrames
    f1 = median
    values# = v2#
    call median voicedFrames
    f2 = median
    values# = v3#
    call median voicedFrames
    f3 = median
    values# = w1#
    call median voicedFrames
    b1 = median
    move1 = sum (d1#) / max (1, steps)
    move2 = sum (d2#) / max (1, steps)

    # Level of 6 to 8 kHz beside everything.
    selectObject: sound
    spectrum = To Spectrum: "yes"
    part = Get band energy: 6000, 8000
    whole = Get band energy: 0, 0
    top = 10 * log10 (max (part / whole, 1e-12))

    removeObject: intensity, thin, pitch, pulses, harmonicity, formant, spectrum
endproc

# Of the first numbers of values#.
procedure median length
    if length = 0
        median = undefined
    else
        sorted# = zero# (length)
        for place to length
            sorted# [place] = values# [place]
        endfor
        sorted# = sort# (sorted#)
        median = (sorted# [floor ((length + 1) / 2)] + sorted# [ceiling ((length + 1) / 2)]) / 2
    endif
endproc
