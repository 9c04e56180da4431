// The views of a metadata database, without a row.
#pragma once

inline constexpr const char* kViews =
    "create table mx_v_datafield (dtName, fldName, fldRealName, baseType, dtId, fldId,"
    " tabRealName, tabRefName, state);"
    "create table mx_v_rtfs (rttId, rtfId, fldName, realName, baseType, fldId);"
    "create table Mx_v_Rtts (rttId, rtId, dtName, dtId, realName, refName, style, state);";
