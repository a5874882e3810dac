#include "core/dsp/kernels/KernelTable.h"

namespace orvanta {

extern constexpr Kernels kAVX2Kernels = kernelTable(InstructionSet::avx2);

} // namespace orvanta
