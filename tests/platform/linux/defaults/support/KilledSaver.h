#pragma once

namespace orvanta::test {

/// Kills a program while it saves, again and again on one database, at random moments; after each
/// time what is stored must be the state after one of its saves.
void expectOldOrNewSettingsAfterKills(int kills);

} // namespace orvanta::test
