// A site's own bit-buffer primitives: only declared, so each access is a call.
#pragma once

#include <Kelvar/Types.h>

KELVAR_API void getBuf( const U8* src, int srcLen, U8* value, int valueLen, int width, int offset );
KELVAR_API void setBuf( U8* dst, int dstLen, const U8* value, int valueLen, int width, int offset );
KELVAR_API void maskBuf( const U32* src, int srcWords, U32* dst, int dstWords, const U32* mask,
                         int maskWords );
