#include "core/dsp/kernels/KernelTable.h"

namespace orvanta {

extern constexpr Kernels kBaselineKernels = kernelTable(InstructionSet::baseline);

} // namespace orvanta
