#include "device/setPointText.h"

#include <array>
#include <string_view>

namespace ied {

namespace {

constexpr u32 firstHarmonic = 2;
constexpr u32 lastHarmonic = 63;
constexpr u32 listedNum = 39; // quantities before the harmonics

// Quantities other than harmonics.
constexpr SetPointStr listed[listedNum] = {
    {{"越限未配置", "越限未配置", "Not Config", "Not Config"}},
    {{"相电压越上限告警", "相电压越下限告警", "Over ULN Setpoint Active", "Under ULN Setpoint Active"}},
    {{"线电压越上限告警", "线电压越下限告警", "Over ULL Setpoint Active", "Under ULL Setpoint Active"}},
    {{"相电流越上限告警", "相电流越下限告警", "Over I Setpoint Active", "Under I Setpoint Active"}},
    {{"零序电压越上限告警", "零序电压越下限告警", "Over U4 Setpoint Active", "Under U4 Setpoint Active"}},
    {{"零序电流越上限告警", "零序电流越下限告警", "Over I4 Setpoint Active", "Under I4 Setpoint Active"}},
    {{"频率偏差越上限告警", "频率偏差越下限告警", "Over Freq. Deviation Setpoint Active",
      "Under Freq. Deviation Setpoint Active"}},
    {{"总有功功率越上限告警", "总有功功率越下限告警", "Over P Setpoint Active", "Under P Setpoint Active"}},
    {{"总无功功率越上限告警", "总无功功率越下限告警", "Over Q Setpoint Active", "Under Q Setpoint Active"}},
    {{"总视在功率越上限告警", "总视在功率越下限告警", "Over S Setpoint Active", "Under S Setpoint Active"}},
    {{"总功率因数越上限告警", "总功率因数越下限告警", "Over PF Setpoint Active", "Under PF Setpoint Active"}},
    {{"DI1闭合告警", "DI1打开告警", "DI1 Close Active", "DI1 Open Active"}},
    {{"DI2闭合告警", "DI2打开告警", "DI2 Close Active", "DI2 Open Active"}},
    {{"DI3闭合告警", "DI3打开告警", "DI3 Close Active", "DI3 Open Active"}},
    {{"DI4闭合告警", "DI4打开告警", "DI4 Close Active", "DI4 Open Active"}},
    {{"DI5闭合告警", "DI5打开告警", "DI5 Close Active", "DI5 Open Active"}},
    {{"DI6闭合告警", "DI6打开告警", "DI6 Close Active", "DI6 Open Active"}},
    {{"DI7闭合告警", "DI7打开告警", "DI7 Close Active", "DI7 Open Active"}},
    {{"DI8闭合告警", "DI8打开告警", "DI8 Close Active", "DI8 Open Active"}},
    {{"总有功功率实时需量越上限告警", "总有功功率实时需量越下限告警",
      "Over Real Time Demand P Setpoint Active", "Under Real Time Demand P Setpoint Active"}},
    {{"总无功功率实时需量越上限告警", "总无功功率实时需量越下限告警",
      "Over Real Time Demand Q Setpoint Active", "Under Real Time Demand Q Setpoint Active"}},
    {{"总视在功率实时需量越上限告警", "总视在功率实时需量越下限告警",
      "Over Real Time Demand S Setpoint Active", "Under Real Time Demand S Setpoint Active"}},
    {{"总功率因数实时需量越上限告警", "总功率因数实时需量越下限告警",
      "Over Real Time Demand PF Setpoint Active", "Under Real Time Demand PF Setpoint Active"}},
    {{"总有功功率预测需量越上限告警", "总有功功率预测需量越下限告警",
      "Over Predicted Demand P Setpoint Active", "Under Predicted Demand P Setpoint Active"}},
    {{"总无功功率预测需量越上限告警", "总无功功率预测需量越下限告警",
      "Over Predicted Demand Q Setpoint Active", "Under Predicted Demand Q Setpoint Active"}},
    {{"总视在功率预测需量越上限告警", "总视在功率预测需量越下限告警",
      "Over Predicted Demand S Setpoint Active", "Under Predicted Demand S Setpoint Active"}},
    {{"总功率因数预测需量越上限告警", "总功率因数预测需量越下限告警",
      "Over Predicted Demand PF Setpoint Active", "Under Predicted Demand PF Setpoint Active"}},
    {{"电压总谐波畸变率越上限告警", "电压总谐波畸变率越下限告警", "Over U THD Setpoint Active",
      "Under U THD Setpoint Active"}},
    {{"电压奇次谐波畸变率越上限告警", "电压奇次谐波畸变率越下限告警", "Over U TOHD Setpoint Active",
      "Under U TOHD Setpoint Active"}},
    {{"电压偶次谐波畸变率越上限告警", "电压偶次谐波畸变率越下限告警", "Over U TEHD SetPoint Active",
      "Under U TEHD Setpoint Active"}},
    {{"电流总谐波畸变率越上限告警", "电流总谐波畸变率越下限告警", "Over I THD Setpoint Active",
      "Under I THD Setpoint Active"}},
    {{"电流奇次谐波畸变率越上限告警", "电流奇次谐波畸变率越下限告警", "Over I TOHD Setpoint Active",
      "Under I TOHD Setpoint Active"}},
    {{"电流偶次谐波畸变率越上限告警", "电流偶次谐波畸变率越下限告警", "Over I TEHD Setpoint Active",
      "Under I TEHD Setpoint Active"}},
    {{"电压负序不平衡度越上限告警", "电压负序不平衡度越下限告警", "Over U2 Unbalance Setpoint Active",
      "Under U2 Unbalance Setpoint Active"}},
    {{"电压零序不平衡度越上限告警", "电压零序不平衡度越下限告警", "Over U0 Unbalance Setpoint Active",
      "Under U0 Unbalance Setpoint Active"}},
    {{"电流负序不平衡度越上限告警", "电流负序不平衡度越下限告警", "Over I2 Unbalance Setpoint Active",
      "Under I2 Unbalance Setpoint Active"}},
    {{"电流零序不平衡度越上限告警", "电流零序不平衡度越下限告警", "Over I0 Unbalance Setpoint Active",
      "Under I0 Unbalance Setpoint Active"}},
    {{"电压偏差越上限告警", "电压偏差越下限告警", "Over U Deviation Setpoint Active",
      "Under U Deviation Setpoint Active"}},
    {{"逆相序告警", "逆相序告警", "Reverse Phase Seq Active", "Reverse Phase Seq Active"}},
};

// The texts of a harmonic: what stands before and behind its number.
struct HarmonicText {
    std::string_view before, behind;
};
constexpr HarmonicText harmonicTexts[2][4] = {
    {{"", "次电压谐波越上限告警"},
     {"", "次电压谐波越下限告警"},
     {"H", " Over U Harmonic Setpoint Active"},
     {"H", " Under U Harmonic Setpoint Active"}},
    {{"", "次电流谐波越上限告警"},
     {"", "次电流谐波越下限告警"},
     {"H", " Over I Harmonic Setpoint Active"},
     {"H", " Under I Harmonic Setpoint Active"}},
};

using HarmonicBuffers = std::array<std::array<std::array<char, 48>, 4>, setPointStrNum - listedNum>;

consteval HarmonicBuffers makeHarmonics() {
    HarmonicBuffers out{};
    for (u32 h = firstHarmonic; h <= lastHarmonic; h++) {
        for (u32 kind = 0; kind < 2; kind++) {
            for (u32 i = 0; i < 4; i++) {
                char *text = out[2 * (h - firstHarmonic) + kind][i].data();
                const HarmonicText &parts = harmonicTexts[kind][i];
                std::size_t length = parts.before.copy(text, parts.before.size());
                if (h >= 10) {
                    text[length++] = static_cast<char>('0' + h / 10);
                }
                text[length++] = static_cast<char>('0' + h % 10);
                length += parts.behind.copy(text + length, parts.behind.size());
                text[length] = '\0';
            }
        }
    }
    return out;
}

constexpr HarmonicBuffers harmonics = makeHarmonics();

consteval auto makeSetPointStr() {
    std::array<SetPointStr, setPointStrNum> out{};
    for (u32 i = 0; i < setPointStrNum; i++) {
        for (u32 n = 0; n < 4; n++) {
            out[i].text[n] = i < listedNum ? listed[i].text[n] : harmonics[i - listedNum][n].data();
        }
    }
    return out;
}

} // namespace

constexpr std::array<SetPointStr, setPointStrNum> setPointStr = makeSetPointStr();

} // namespace ied
