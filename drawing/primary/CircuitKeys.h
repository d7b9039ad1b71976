// The keys under which a primary diagram stores its circuits, head texts and circuit BOM records.
#pragma once

inline constexpr char16_t QX_Circuit1_No[] = u"QX_Circuit1_No";
inline constexpr char16_t QX_Circuit1_Path[] = u"QX_Circuit1_Path";
inline constexpr char16_t QX_Circuit1_GroupCode[] = u"QX_Circuit1_GroupCode";
inline constexpr char16_t QX_Circuit1_Use[] = u"QX_Circuit1_Use";
inline constexpr char16_t QX_Circuit1_Type[] = u"QX_Circuit1_Type";
inline constexpr char16_t QX_Circuit1_Cir1Voltage[] = u"QX_Circuit1_Cir1Voltage";
inline constexpr char16_t QX_Circuit1_Cir2Voltage[] = u"QX_Circuit1_Cir2Voltage";
inline constexpr char16_t QX_Circuit1_MuXianType[] = u"QX_Circuit1_MuXianType";
inline constexpr char16_t QX_Circuit1_TankCirNo[] = u"QX_Circuit1_TankCirNo";
// Any number of 1000 items: the row texts.
inline constexpr char16_t QX_CIRCUIT1_EXATTRIBUTE[] = u"QX_CIRCUIT1_EXATTRIBUTE";
inline constexpr char16_t QX_SYS_HEAD_ITEMNAME[] = u"QX_SYS_HEAD_ITEMNAME";
// Xrecords of a circuit block or of the marker in its definition.
inline constexpr char16_t QX_CIRCUI1_BOMRECORD[] = u"QX_CIRCUI1_BOMRECORD";
inline constexpr char16_t QX_CIRCUI1_NewAddInfo[] = u"QX_CIRCUI1_NewAddInfo";
// Presence marks a marker that a scan added: until a record is stored on it, it stands for nothing, so
// the nested symbols of its definition still give the circuit's rows.
inline constexpr char16_t QX_CIRCUIT1_ADDEDMARKER[] = u"QX_CIRCUIT1_ADDEDMARKER";
