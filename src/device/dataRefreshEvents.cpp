// States and events in the cycle of the refresh task: which counter brings up what.
#include "DebugInfo/DebugInfo.h"
#include "device/dataRefresh.h"
#include "device/region.h"
#include "device/statusRefresh.h"

namespace ied {

namespace {

// A source of states or events, played when its counter differs from what is remembered of it.
struct EventRule {
    RegionField<u32> counter;
    u32 index; // of the counter
    u32 RefreshState::*remembered;
    u32 (*play)(u32 last); // returns what is to be remembered
    const char *message;   // that word follows
};

template <StType type> u32 playStates(u32 last) {
    return refreshSTData(type, last);
}
template <u32 group> u32 playWave(u32) {
    return RDDataRefresh(group);
}

using State = RefreshState;
constexpr EventRule eventRules[] = {
    {region::diRing.counter, 0, &State::lastDiStatePtr, playStates<StDI>,
     "DI state is refreshed! Now ptr is"},
    {region::doRing.counter, 0, &State::lastDoStatePtr, playStates<StDO>,
     "DO state is refreshed! Now ptr is"},
    {region::spRing.counter, 0, &State::lastSpStatePtr, playStates<StSP>,
     "SP state is refreshed! Now ptr is"},
    {region::lgRing.counter, 0, &State::lastLogicStatePtr, playStates<StLG>,
     "Logic state is refreshed! Now ptr is"},
    {region::checkWord, 0, &State::lastChkSelfState, playStates<StCheck>,
     "Check state is refreshed! Now state is"},
    {region::pqCounter, 0, &State::lastPqLogPtr, SOEDataRefresh, "PQ log is refreshed! Now ptr is"},
    {region::waveCount, 0, &State::lastWaveRecPtr1, playWave<0>, "Wave1 state is refreshed! Now ptr is"},
    {region::waveCount, 1, &State::lastWaveRecPtr2, playWave<1>, "Wave2 state is refreshed! Now ptr is"},
};

} // namespace

void refreshEvents(RefreshState *state) {
    for (const EventRule &rule : eventRules) {
        u32 &last = state->*rule.remembered;
        if (regionLoadCounter(rule.counter, rule.index) == last) {
            continue;
        }
        last = rule.play(last);
        dbInfo(DbUPD, DbDBG, "refreshLocalData", "%s %d", rule.message, static_cast<int>(last));
    }
}

} // namespace ied
