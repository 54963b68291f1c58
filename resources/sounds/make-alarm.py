#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Makes Alarm5.wav, the sound that rings when a store is near.

Three rising chimes, twice. Their fundamentals and overtones lie between 1 and 4.5 kHz, where a
phone's loudspeaker and the ear are at their best. The file begins and ends in silence, so that it
can be played again and again without a click.
"""
import array
import math
import pathlib
import wave

RATE = 44100  # samples per second
PEAK = 0.89  # -1 dBFS: nothing clips, not even after resampling
DURATION = 2.4  # seconds
NOTES = (1046.5, 1318.5, 1568.0)  # Hz: C6, E6, G6
OVERTONES = ((1, 1.0), (2, 0.45), (3, 0.2))  # multiple of the fundamental, amplitude
NOTE_STEP = 0.2  # seconds from one chime to the next
ROUND_STEP = 1.15  # seconds from one group of chimes to the next
ATTACK = 0.006  # seconds
DECAY = 0.22  # seconds until a chime has fallen to 1/e
NOTE_LENGTH = 0.75  # seconds
RELEASE = 0.08  # seconds at the end of a chime in which it falls to nothing


def chime(frequency):
    samples = []
    for index in range(int(NOTE_LENGTH * RATE)):
        time = index / RATE
        level = min(1.0, time / ATTACK) * math.exp(-time / DECAY)
        level *= min(1.0, (NOTE_LENGTH - time) / RELEASE)
        samples.append(level * sum(amplitude * math.sin(2 * math.pi * multiple * frequency * time)
                                   for multiple, amplitude in OVERTONES))
    return samples


def main():
    mix = [0.0] * int(DURATION * RATE)
    for group in range(2):
        for position, frequency in enumerate(NOTES):
            start = int((group * ROUND_STEP + position * NOTE_STEP) * RATE)
            for index, sample in enumerate(chime(frequency)):
                mix[start + index] += sample
    loudest = max(abs(sample) for sample in mix)
    data = array.array("h", (round(sample / loudest * PEAK * 32767) for sample in mix))
    with wave.open(str(pathlib.Path(__file__).with_name("Alarm5.wav")), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(data.tobytes())


main()
