// Channel numbers by name. Printed from core/channels/catalogue.def by the target `derive`; do not edit.
'use strict';

exports.ChannelId = Object.freeze({
    TIME: 0, // Time
    BSP: 1, // BSP
    AWA: 2, // AWA
    AWS: 3, // AWS
    TWA: 4, // TWA
    TWS: 5, // TWS
    TWD: 6, // TWD
    RUDDERFWD: 7, // Rudder forward
    DTARGBSP: 8, // Delta target bsp
    COURSE: 9, // Course
    LEEWAY: 10, // Leeway
    SET: 11, // Current set
    DRIFT: 12, // Current drift
    HDG: 13, // Heading
    AIRTEMP: 14, // Air temperature
    SEATEMP: 15, // Sea temperature
    BARO: 16, // Barometer
    DEPTH: 17, // Depth
    HEEL: 18, // Heel (roll)
    TRIM: 19, // Trim (pitch)
    RUDDER: 20, // Rudder
    TAB: 21, // Tab
    FORESTAY: 22, // Forestay load
    DOWNHAUL: 23, // Downhaul load
    MASTANG: 24, // Mast angle
    FSTAYLEN: 25, // Forestay length
    MASTBUTT: 26, // Mast butt
    LOAD_S: 27, // Load cell starboard
    LOAD_P: 28, // Load cell port
    RAKE: 29, // Mast rake
    VOLTS: 30, // Voltage
    VMG: 31, // VMG
    ROT: 32, // Rate of turn
    DT_ON_S: 33, // Layline dist on starb
    TM_ON_S: 34, // Layline time on starb
    BRG_ON_P: 35, // Layline bearing on port
    DT_ON_P: 36, // Layline dist on port
    TM_ON_P: 37, // Layline time on port
    BRG_ON_S: 38, // Layline bearing on strb
    GPSMETHOD: 39, // GPS method
    HDOP: 40, // GPS HDOP
    PDOP: 41, // GPS PDOP
    VDOP: 42, // GPS VDOP
    GPSNUM: 43, // GPS number
    GPSAGE: 44, // GPS age
    ALTITUDE: 45, // GPS altitude
    GEOSEP: 46, // GPS geoidal separation
    GPSMODE: 47, // GPS mode
    LAT: 48, // Latitude
    LON: 49, // Longitude
    COG: 50, // Cog
    SOG: 51, // Sog
    DIFFSTN: 52, // Diff station
    TARGTWAN: 53, // Target twa nav
    TARGBSPN: 54, // Target bsp nav
    TARGVMG: 55, // Target vmg
    TARGHEEL: 56, // Target heel
    POLBSP: 57, // Polar bsp
    POLBSP_PCT: 58, // Polar bsp %
    POLHEEL: 59, // Polar heel
    ERROR: 60, // Error code
    RUNNERS: 61, // Runner starboard
    RUNNERP: 62, // Runner port
    POLBSPN: 63, // Polar bsp nav
    POLBSPN_PCT: 64, // Polar bsp nav %
    TRGTWA_L: 65, // Target twa without leeway
    VMG_PCT: 66, // VMG %
    VANG: 67, // Vang
    TRAV: 68, // Traveller
    MAIN: 69, // MainSheet
    VMCPOLMK: 70, // VMC to mark polar
    KEELANG: 71, // Keel angle
    KEELHT: 72, // Keel height
    BOARD: 73, // Board
    ENGOILPRES: 74, // Engine oil pressure
    RPM_1: 75, // RPM 1
    RPM_2: 76, // RPM 2
    BOARD_P: 77, // Board port
    BOARD_S: 78, // Board starboard
    OPPTRACK: 79, // Opposite track
    D_FINISH: 80, // Finish, distance to
    STTMTOP: 81, // Start time to port
    STTMTOS: 82, // Start time to strb
    LNSQWIND: 83, // Start line square wind
    DISTTOLN: 84, // Start distance to line
    RCHTMTOLN: 85, // Start reach time to line
    RCHDTTOLN: 86, // Start reach dist to line
    RCHBSTOLN: 87, // Start reach speed to line
    MARK_TM: 88, // Mark time
    TMNXMK_P: 89, // Next mark time on port
    TMNXMK_S: 90, // Next mark time on starb
    XTE: 91, // XTE
    VMC: 92, // VMC
    MAGVAR: 93, // Magnetic variation
    GWD: 94, // GWD
    GWS: 95, // GWS
    LAYDIST: 96, // Layline distance
    LAYTIME: 97, // Layline time
    LAYBRG: 98, // Layline bearing
    VMC_PCT: 99, // VMC %
    VMCPOL: 100, // VMC Polar
    VMCOPT: 101, // VMC optimum
    VMCOPTHDG: 102, // VMC optimum heading
    VMCOPTTWA: 103, // VMC optimum twa
    DTARGTWA: 104, // Delta target twa
    MKRNG: 105, // Mark range
    MKBRG: 106, // Mark bearing
    MKGPSTIME: 107, // Mark GPS time
    MKTWA: 108, // Mark twa
    PREDSET: 109, // Current set predicted
    PREDDRIFT: 110, // Current drift predicted
    NXTMKRNG: 111, // Next mark range
    NXTMKBRG: 112, // Next mark bearing
    NXTMKTWA: 113, // Next mark twa
    RADARRNG: 114, // Radar range
    RADARBRG: 115, // Radar bearing
    BLWLNSTRN: 116, // Start stern below line
    ALT_0: 117, // Alternating 0
    ALT_1: 118, // Alternating 1
    ALT_2: 119, // Alternating 2
    ALT_3: 120, // Alternating 3
    ALT_4: 121, // Alternating 4
    ALT_5: 122, // Alternating 5
    ALT_6: 123, // Alternating 6
    ALT_7: 124, // Alternating 7
    ALT_8: 125, // Alternating 8
    ALT_9: 126, // Alternating 9
    NXMKPOLTM: 127, // Next mark polar time
    BIAS_ANG: 128, // Start bias angle
    BIASL: 129, // Start bias length
    ST_LAY_P: 130, // Start layline on port
    ST_LAY_S: 131, // Start layline on strbd
    NXTMKAWA: 132, // Next mark awa
    NXTMKAWS: 133, // Next mark aws
    STBDTURNR: 134, // Start strb with right turn
    PORTTURNR: 135, // Start port with right turn
    STBDTURNL: 136, // Start strb with left turn
    PORTTURNL: 137, // Start port with left turn
    DT_NOTE: 138, // Race note GPS reach dist to
    TM_NOTE: 139, // Race note GPS reach time to
    LOG_BSP: 140, // Log Bsp
    LOG_SOG: 141, // Log Sog
    GPSTMTOLN: 142, // Start GPS time to line
    GPSTMTOBN: 143, // Start GPS time to burn
    TARGTWAS: 144, // Target twa start
    TARGBSPS: 145, // Target bsp start
    GPS_TIME: 146, // GPS time
    TWD_PLUS_90: 147, // TWD + 90°
    TWD_MINUS_90: 148, // TWD - 90°
    SHADOW: 149, // Shadow
    SHADOWOPP: 150, // Shadow opposite gybe
    DOWNHAUL2: 151, // Downhaul 2 load
    TACK_ANG: 152, // Tacking angle
    TACKANGPL: 153, // Tacking angle polar
    TARGAWA: 154, // Target awa
    PX_BURN: 155, // Start time to burn X sec port
    SX_BURN: 156, // Start time to burn X sec strb
    STTMLAYP: 157, // Start time to layline P
    STTMLAYS: 158, // Start time to layline S
    MK_SET: 159, // Mark current set
    MK_DRIFT: 160, // Mark current drift
    MK_LAT: 161, // Mark latitude
    MK_LON: 162, // Mark longitude
    PORT_LAT: 163, // Start port latitude
    PORT_LON: 164, // Start port longitude
    STBD_LAT: 165, // Start stbd latitude
    STBD_LON: 166, // Start stbd longitude
    HPE: 167, // GPS estimated position err
    RH: 168, // Relative humidity
    LEAD_P: 169, // Lead port
    LEAD_S: 170, // Lead starboard
    BACKSTAY: 171, // Backstay
    USER_0: 172, // User 0
    USER_1: 173, // User 1
    USER_2: 174, // User 2
    USER_3: 175, // User 3
    USER_4: 176, // User 4
    USER_5: 177, // User 5
    USER_6: 178, // User 6
    USER_7: 179, // User 7
    USER_8: 180, // User 8
    USER_9: 181, // User 9
    USER_10: 182, // User 10
    USER_11: 183, // User 11
    USER_12: 184, // User 12
    USER_13: 185, // User 13
    USER_14: 186, // User 14
    USER_15: 187, // User 15
    USER_16: 188, // User 16
    USER_17: 189, // User 17
    USER_18: 190, // User 18
    USER_19: 191, // User 19
    USER_20: 192, // User 20
    USER_21: 193, // User 21
    USER_22: 194, // User 22
    USER_23: 195, // User 23
    USER_24: 196, // User 24
    USER_25: 197, // User 25
    USER_26: 198, // User 26
    USER_27: 199, // User 27
    USER_28: 200, // User 28
    USER_29: 201, // User 29
    USER_30: 202, // User 30
    USER_31: 203, // User 31
    TMTOGUN: 204, // Start time to gun
    TMTOLN: 205, // Start time to line
    BURN: 206, // Start time to burn
    BELOWLN: 207, // Start distance below line
    GUNBLWLN: 208, // Start gun dist below line
    GTTMONPT: 209, // Gate lay time on port
    GTDTONST: 210, // Gate lay dist on starb
    GTTMONST: 211, // Gate lay time on starb
    GTDTONPT: 212, // Gate lay dist on port
    GSTMONSB: 213, // Gate spot time on starb
    GSTMONPT: 214, // Gate spot time on port
    PRTUPBRG: 215, // Layline up bearing on port
    STBUPBRG: 216, // Layline up bearing on strb
    PRTDNBRG: 217, // Layline dn bearing on port
    STBDNBRG: 218, // Layline dn bearing on strb
    TD_L_PT: 219, // Tide left port time
    TD_L_STB: 220, // Tide left stbd time
    TD_R_PRT: 221, // Tide right port time
    TD_R_STB: 222, // Tide right stbd time
    TD_L_TM: 223, // Tide left time
    TD_R_TM: 224, // Tide right time
    PRTBRGMAX: 225, // Lay bearing on port max
    PRTBRGMIN: 226, // Lay bearing on port min
    STBBRGMAX: 227, // Lay bearing on strb max
    STBBRGMIN: 228, // Lay bearing on strb min
    MKLYTWD: 229, // TWD to lay mark
    MKLYTWDOP: 230, // TWD to lay mark opp tack
    DBSPSOG: 231, // Bsp - Sog
    DHDGCOG: 232, // Heading - Cog
    RTMONPRT: 233, // Layline time on port ratio
    RTMONSTB: 234, // Layline time on strb ratio
    TWDPERIOD: 235, // TWD period
    TWSPERIOD: 236, // TWS period
    TARG_TWA: 237, // Target twa
    TARG_BSP: 238, // Target bsp
    TIDE: 239, // Tide station
    POL_0: 240, // Polar 0
    POL_1: 241, // Polar 1
    POL_2: 242, // Polar 2
    POL_3: 243, // Polar 3
    POL_0_PCT: 244, // Polar 0 %
    POL_1_PCT: 245, // Polar 1 %
    POL_2_PCT: 246, // Polar 2 %
    POL_3_PCT: 247, // Polar 3 %
    POL0TARG: 248, // Polar 0 target
    POL1TARG: 249, // Polar 1 target
    POL2TARG: 250, // Polar 2 target
    POL3TARG: 251, // Polar 3 target
    WVSIGHT: 252, // Wave sig height
    WVSIGPD: 253, // Wave sig period
    WVMAXHT: 254, // Wave max height
    WVMAXPD: 255, // Wave max period
    GPS_TOFFSET: 256, // GPS time offset
    HEAVE: 257, // Heave
    MWA: 258, // Mwa
    MWS: 259, // Mws
    BOOM: 260, // Boom position
    TARGBSP_PCT: 261, // Target bsp %
    HDG2ST: 262, // Heading to steer
    HDG2STPOL: 263, // Heading to steer polar
    STBSTOP: 264, // Start speed to port
    STBSTOS: 265, // Start speed to starboard
    STBSONP: 266, // Start speed on port
    STBSONS: 267, // Start speed on starboard
    TWIST: 268, // Twist
    SAIL: 269, // Sail
    SAILMARK: 270, // Sail mark
    SAILNEXT: 271, // Sail next mark
    TWDTWISTED: 272, // TWD plus twist
    TACKLOSST: 273, // Tack/gybe loss time
    TACKLOSSD: 274, // Tack/gybe loss metres
    TRIPLOG: 275, // Instrument trip log
    DMKBRGCOG: 276, // Mark bearing - Cog
    TRIMRATE: 277, // Trim (pitch) rate
    HEELRATE: 278, // Heel (roll) rate
    DPOLBSP: 279, // Delta polar bsp
    DTARGHEEL: 280, // Delta target heel (roll)
    DEFLECTORP: 281, // Deflector port
    RUDDERP: 282, // Rudder port
    RUDDERS: 283, // Rudder starboard
    RUDDERTOE: 284, // Rudder toe
    BSPTR: 285, // Bsp transverse
    FSTAYINNER: 286, // Forestay inner load
    GATETIME: 287, // Gate time
    AHEAD: 288, // Ahead of
    BRG: 289, // Boat brg from 0
    RNG: 290, // Boat rng from 0
    DEFLECTORS: 291, // Deflector starboard
    BOBSTAY: 292, // Bobstay
    OUTHAUL: 293, // Outhaul
    D0_P: 294, // D0 port
    D0_S: 295, // D0 starboard
    D1_P: 296, // D1 port
    D1_S: 297, // D1 starboard
    V0_P: 298, // V0 port
    V0_S: 299, // V0 starboard
    V1_P: 300, // V1 port
    V1_S: 301, // V1 starboard
    STTMPSIMPLE: 302, // Start time to port simple
    STTMSSIMPLE: 303, // Start time to strb simple
    TARGTWD: 304, // Target TWD
    TARGTWDDELTA: 305, // Target TWD delta
    POLTWS: 306, // Polar TWS
    POLTWSDELTA: 307, // Polar TWS delta
    POLTWS_PCT: 308, // Polar TWS %
    OPPTRKCOG: 309, // Opposite track Cog
    STPINCHP: 310, // Start pinch time to port
    STPINCHS: 311, // Start pinch time to strb
    PREDTWD: 312, // TWD predicted
    PREDTWS: 313, // TWS predicted
    PREDMSLP: 314, // MSLP predicted
    NXMK_LAT: 315, // Next mark latitude
    NXMK_LON: 316, // Next mark longitude
    BOOMANG: 317, // Boom angle
    CUNNINGHAM: 318, // Cunningham
    FSTAYINHAL: 319, // Forestay inner Halyard
    JIBFURL: 320, // Jib furl
    JIBH: 321, // Jib halyard
    MASTCANT: 322, // Mast cant
    J1: 323, // J1
    J2: 324, // J2
    J3: 325, // J3
    J4: 326, // J4
    FOIL_P: 327, // Foil port
    FOIL_S: 328, // Foil starboard
    REACHER: 329, // Reacher
    BLADE: 330, // Blade
    STAYSAIL: 331, // Staysail
    SOLENT: 332, // Solent
    TACK: 333, // Tack
    TACKP: 334, // Tack port
    TACKS: 335, // Tack starboard
    DEFLECTU: 336, // Deflector upper
    DEFLECTL: 337, // Deflector lower
    WINCHP: 338, // Winch port
    WINCHS: 339, // Winch starboard
    SPINP: 340, // Spinnaker port
    SPINS: 341, // Spinnaker starboard
    MAINH: 342, // Main halyard
    MAST2: 343, // Mast2
    DPOLHEEL: 344, // Delta polar heel (roll)
    PRTBRGMEAN: 345, // Lay bearing on port mean
    STBBRGMEAN: 346, // Lay bearing on strb mean
    PRTBRGSD: 347, // Lay bearing on port SD
    STBBRGSD: 348, // Lay bearing on strb SD
    P_BURN: 349, // Start time to port burn
    S_BURN: 350, // Start time to strb burn
    DEPTHAFT: 351, // Depth aft
    BURN_PCT: 352, // Start burn %
    POLBSPS: 353, // Polar bsp start
    GUNBSPTARG_PCT: 354, // Start gun bsp target %
    GUNBSPPOL_PCT: 355, // Start gun bsp polar %
    LINETIME: 356, // Start boat to pin time
    DCRSCOG: 357, // Course - Cog
    LAYTIMEGPS: 358, // Layline time GPS
    ENGTEMP: 359, // Engine temperature
    ENGOILTEMP: 360, // Engine oil temperature
    TRANOILTEMP: 361, // Transmission oil temperature
    TRANOILPRES: 362, // Transmission oil pressure
    FUELLEV: 363, // Fuel level
    CURRENT: 364, // Current
    CHARGE_PCT: 365, // Charge state %
    GTRNG: 366, // Gate range
    GTBRG: 367, // Gate bearing
    TWG: 368, // TWG
    TWDG: 369, // TWD gust
    DEWPT: 370, // Dew point
    FSTAY_PLUS_TACK: 371, // Forestay + tack load
    GRADIENT: 372, // Gradient
    TWSGRADIENT: 373, // TWS plus gradient
    RUD_PTCH_P: 374, // Rudder pitch port
    RUD_PTCH_S: 375, // Rudder pitch starboard
    TEST_TIME: 376, // Test time
    GATESQWIND: 377, // Gate square wind
    GATEBIASL: 378, // Gate bias length
    WATERLEV: 379, // Water level
    WATERLEV2: 380, // Water level 2
    FUELLEV2: 381, // Fuel level 2
    CANLOAD_PCT: 382, // CAN Load %
    FASTPKERR: 383, // CAN Fast packet errors
    POLBSPS_PCT: 384, // Polar bsp start %
    TARGBSPS_PCT: 385, // Target bsp start %
    OPPTRKMK: 386, // Opposite track - mark brg
    AIRDEN: 387, // Air density
    AIRDENPRED: 388, // Air density predicted
    VOLT_1: 389, // Voltage 1
    VOLT_2: 390, // Voltage 2
    VOLT_3: 391, // Voltage 3
    VOLT_4: 392, // Voltage 4
    CURRENT1: 393, // Current 1
    CURRENT2: 394, // Current 2
    CURRENT3: 395, // Current 3
    CURRENT4: 396, // Current 4
    CHARGE1_PCT: 397, // Charge state 1 %
    CHARGE2_PCT: 398, // Charge state 2 %
    CHARGE3_PCT: 399, // Charge state 3 %
    CHARGE4_PCT: 400, // Charge state 4 %
    CALROT: 401, // Cal ROT
    CALBRAKE: 402, // Cal brake
    CALACCEL: 403, // Cal acceleration
    SAILEVT: 404, // Sail event
    MOUSETM: 405, // Mouse time
    MOUSETMPOL: 406, // Mouse polar time
    PORTFWD_PCT: 407, // Tank port fwd %
    PORTAFT_PCT: 408, // Tank port aft %
    STBDFWD_PCT: 409, // Tank stbd fwd %
    STBDAFT_PCT: 410, // Tank stbd aft %
    TWDMIN: 411, // TWD min
    TWDMAX: 412, // TWD max
    PREDSEATEMP: 413, // Sea temperature predicted
});
