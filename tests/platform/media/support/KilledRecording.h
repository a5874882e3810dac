#pragma once

namespace orvanta::test {

/// Kills so many recordings, each at a random point, and expects of every file that is left behind
/// that all readers read it and that it holds what was handed over: a WAV file all of it, an M4A
/// file all but the last second.
void expectKilledWAVFilesToBeWhole(int times);
void expectKilledM4AFilesToBeWhole(int times);

} // namespace orvanta::test
