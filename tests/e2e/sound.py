"""What the program plays, recorded from the stage's sound sink."""

from __future__ import annotations

import dataclasses
import pathlib
import subprocess

import numpy as np
from waiting import until

RATE = 48000
BYTES_PER_FRAME = 4
SILENCE_DB = -120.0


@dataclasses.dataclass(frozen=True)
class Recording:
    samples: np.ndarray

    def level(self) -> float:
        """Decibels of the mean power; full scale is 0."""
        power = float(np.mean(np.square(self.samples)))
        return max(SILENCE_DB, 10 * np.log10(power)) if power > 0 else SILENCE_DB

    def frequency(self) -> float:
        """Hertz of the strongest tone, finer than one step of the spectrum; 0 in silence."""
        if self.level() <= SILENCE_DB:
            return 0.0
        spectrum = np.abs(np.fft.rfft(self.samples * np.hanning(len(self.samples))))
        peak = int(np.argmax(spectrum[1:-1])) + 1
        low, middle, high = np.log(spectrum[peak - 1 : peak + 2] + 1e-12)
        shift = 0.5 * (low - high) / (low - 2 * middle + high)
        return (peak + float(shift)) * RATE / len(self.samples)


class Sound:
    def __init__(self, env: dict[str, str], folder: pathlib.Path) -> None:
        self._env = env
        self._file = folder / "recording.raw"

    def record(self, seconds: float, skip: float = 0.0) -> Recording:
        """What is heard from now on; `skip` seconds are dropped first, for a change to arrive."""
        wanted = int((skip + seconds) * RATE) * BYTES_PER_FRAME
        with self._file.open("wb") as output:
            recorder = subprocess.Popen(
                [
                    "parec",
                    "-d",
                    "rec.monitor",
                    "--raw",
                    "--format=s16le",
                    f"--rate={RATE}",
                    "--channels=2",
                    "--latency-msec=20",
                ],
                env=self._env,
                stdout=output,
                stderr=subprocess.DEVNULL,
            )
            try:
                until(
                    lambda: self._file.stat().st_size >= wanted,
                    skip + seconds + 10,
                    "the recording is long enough",
                )
            finally:
                recorder.terminate()
                recorder.wait(timeout=10)
        data = np.fromfile(self._file, dtype="<i2", count=wanted // 2)
        frames = data.reshape(-1, 2).mean(axis=1) / 32768.0
        return Recording(frames[int(skip * RATE) :])
