// Channel numbers by name. Printed from core/channels/catalogue.def by the target `derive`; do not edit.

/** The number of a channel, by its name in <tallowmere/channels.h> without the prefix. */
export const ChannelId: {
    /** Time */
    readonly TIME: 0;
    /** BSP */
    readonly BSP: 1;
    /** AWA */
    readonly AWA: 2;
    /** AWS */
    readonly AWS: 3;
    /** TWA */
    readonly TWA: 4;
    /** TWS */
    readonly TWS: 5;
    /** TWD */
    readonly TWD: 6;
    /** Rudder forward */
    readonly RUDDERFWD: 7;
    /** Delta target bsp */
    readonly DTARGBSP: 8;
    /** Course */
    readonly COURSE: 9;
    /** Leeway */
    readonly LEEWAY: 10;
    /** Current set */
    readonly SET: 11;
    /** Current drift */
    readonly DRIFT: 12;
    /** Heading */
    readonly HDG: 13;
    /** Air temperature */
    readonly AIRTEMP: 14;
    /** Sea temperature */
    readonly SEATEMP: 15;
    /** Barometer */
    readonly BARO: 16;
    /** Depth */
    readonly DEPTH: 17;
    /** Heel (roll) */
    readonly HEEL: 18;
    /** Trim (pitch) */
    readonly TRIM: 19;
    /** Rudder */
    readonly RUDDER: 20;
    /** Tab */
    readonly TAB: 21;
    /** Forestay load */
    readonly FORESTAY: 22;
    /** Downhaul load */
    readonly DOWNHAUL: 23;
    /** Mast angle */
    readonly MASTANG: 24;
    /** Forestay length */
    readonly FSTAYLEN: 25;
    /** Mast butt */
    readonly MASTBUTT: 26;
    /** Load cell starboard */
    readonly LOAD_S: 27;
    /** Load cell port */
    readonly LOAD_P: 28;
    /** Mast rake */
    readonly RAKE: 29;
    /** Voltage */
    readonly VOLTS: 30;
    /** VMG */
    readonly VMG: 31;
    /** Rate of turn */
    readonly ROT: 32;
    /** Layline dist on starb */
    readonly DT_ON_S: 33;
    /** Layline time on starb */
    readonly TM_ON_S: 34;
    /** Layline bearing on port */
    readonly BRG_ON_P: 35;
    /** Layline dist on port */
    readonly DT_ON_P: 36;
    /** Layline time on port */
    readonly TM_ON_P: 37;
    /** Layline bearing on strb */
    readonly BRG_ON_S: 38;
    /** GPS method */
    readonly GPSMETHOD: 39;
    /** GPS HDOP */
    readonly HDOP: 40;
    /** GPS PDOP */
    readonly PDOP: 41;
    /** GPS VDOP */
    readonly VDOP: 42;
    /** GPS number */
    readonly GPSNUM: 43;
    /** GPS age */
    readonly GPSAGE: 44;
    /** GPS altitude */
    readonly ALTITUDE: 45;
    /** GPS geoidal separation */
    readonly GEOSEP: 46;
    /** GPS mode */
    readonly GPSMODE: 47;
    /** Latitude */
    readonly LAT: 48;
    /** Longitude */
    readonly LON: 49;
    /** Cog */
    readonly COG: 50;
    /** Sog */
    readonly SOG: 51;
    /** Diff station */
    readonly DIFFSTN: 52;
    /** Target twa nav */
    readonly TARGTWAN: 53;
    /** Target bsp nav */
    readonly TARGBSPN: 54;
    /** Target vmg */
    readonly TARGVMG: 55;
    /** Target heel */
    readonly TARGHEEL: 56;
    /** Polar bsp */
    readonly POLBSP: 57;
    /** Polar bsp % */
    readonly POLBSP_PCT: 58;
    /** Polar heel */
    readonly POLHEEL: 59;
    /** Error code */
    readonly ERROR: 60;
    /** Runner starboard */
    readonly RUNNERS: 61;
    /** Runner port */
    readonly RUNNERP: 62;
    /** Polar bsp nav */
    readonly POLBSPN: 63;
    /** Polar bsp nav % */
    readonly POLBSPN_PCT: 64;
    /** Target twa without leeway */
    readonly TRGTWA_L: 65;
    /** VMG % */
    readonly VMG_PCT: 66;
    /** Vang */
    readonly VANG: 67;
    /** Traveller */
    readonly TRAV: 68;
    /** MainSheet */
    readonly MAIN: 69;
    /** VMC to mark polar */
    readonly VMCPOLMK: 70;
    /** Keel angle */
    readonly KEELANG: 71;
    /** Keel height */
    readonly KEELHT: 72;
    /** Board */
    readonly BOARD: 73;
    /** Engine oil pressure */
    readonly ENGOILPRES: 74;
    /** RPM 1 */
    readonly RPM_1: 75;
    /** RPM 2 */
    readonly RPM_2: 76;
    /** Board port */
    readonly BOARD_P: 77;
    /** Board starboard */
    readonly BOARD_S: 78;
    /** Opposite track */
    readonly OPPTRACK: 79;
    /** Finish, distance to */
    readonly D_FINISH: 80;
    /** Start time to port */
    readonly STTMTOP: 81;
    /** Start time to strb */
    readonly STTMTOS: 82;
    /** Start line square wind */
    readonly LNSQWIND: 83;
    /** Start distance to line */
    readonly DISTTOLN: 84;
    /** Start reach time to line */
    readonly RCHTMTOLN: 85;
    /** Start reach dist to line */
    readonly RCHDTTOLN: 86;
    /** Start reach speed to line */
    readonly RCHBSTOLN: 87;
    /** Mark time */
    readonly MARK_TM: 88;
    /** Next mark time on port */
    readonly TMNXMK_P: 89;
    /** Next mark time on starb */
    readonly TMNXMK_S: 90;
    /** XTE */
    readonly XTE: 91;
    /** VMC */
    readonly VMC: 92;
    /** Magnetic variation */
    readonly MAGVAR: 93;
    /** GWD */
    readonly GWD: 94;
    /** GWS */
    readonly GWS: 95;
    /** Layline distance */
    readonly LAYDIST: 96;
    /** Layline time */
    readonly LAYTIME: 97;
    /** Layline bearing */
    readonly LAYBRG: 98;
    /** VMC % */
    readonly VMC_PCT: 99;
    /** VMC Polar */
    readonly VMCPOL: 100;
    /** VMC optimum */
    readonly VMCOPT: 101;
    /** VMC optimum heading */
    readonly VMCOPTHDG: 102;
    /** VMC optimum twa */
    readonly VMCOPTTWA: 103;
    /** Delta target twa */
    readonly DTARGTWA: 104;
    /** Mark range */
    readonly MKRNG: 105;
    /** Mark bearing */
    readonly MKBRG: 106;
    /** Mark GPS time */
    readonly MKGPSTIME: 107;
    /** Mark twa */
    readonly MKTWA: 108;
    /** Current set predicted */
    readonly PREDSET: 109;
    /** Current drift predicted */
    readonly PREDDRIFT: 110;
    /** Next mark range */
    readonly NXTMKRNG: 111;
    /** Next mark bearing */
    readonly NXTMKBRG: 112;
    /** Next mark twa */
    readonly NXTMKTWA: 113;
    /** Radar range */
    readonly RADARRNG: 114;
    /** Radar bearing */
    readonly RADARBRG: 115;
    /** Start stern below line */
    readonly BLWLNSTRN: 116;
    /** Alternating 0 */
    readonly ALT_0: 117;
    /** Alternating 1 */
    readonly ALT_1: 118;
    /** Alternating 2 */
    readonly ALT_2: 119;
    /** Alternating 3 */
    readonly ALT_3: 120;
    /** Alternating 4 */
    readonly ALT_4: 121;
    /** Alternating 5 */
    readonly ALT_5: 122;
    /** Alternating 6 */
    readonly ALT_6: 123;
    /** Alternating 7 */
    readonly ALT_7: 124;
    /** Alternating 8 */
    readonly ALT_8: 125;
    /** Alternating 9 */
    readonly ALT_9: 126;
    /** Next mark polar time */
    readonly NXMKPOLTM: 127;
    /** Start bias angle */
    readonly BIAS_ANG: 128;
    /** Start bias length */
    readonly BIASL: 129;
    /** Start layline on port */
    readonly ST_LAY_P: 130;
    /** Start layline on strbd */
    readonly ST_LAY_S: 131;
    /** Next mark awa */
    readonly NXTMKAWA: 132;
    /** Next mark aws */
    readonly NXTMKAWS: 133;
    /** Start strb with right turn */
    readonly STBDTURNR: 134;
    /** Start port with right turn */
    readonly PORTTURNR: 135;
    /** Start strb with left turn */
    readonly STBDTURNL: 136;
    /** Start port with left turn */
    readonly PORTTURNL: 137;
    /** Race note GPS reach dist to */
    readonly DT_NOTE: 138;
    /** Race note GPS reach time to */
    readonly TM_NOTE: 139;
    /** Log Bsp */
    readonly LOG_BSP: 140;
    /** Log Sog */
    readonly LOG_SOG: 141;
    /** Start GPS time to line */
    readonly GPSTMTOLN: 142;
    /** Start GPS time to burn */
    readonly GPSTMTOBN: 143;
    /** Target twa start */
    readonly TARGTWAS: 144;
    /** Target bsp start */
    readonly TARGBSPS: 145;
    /** GPS time */
    readonly GPS_TIME: 146;
    /** TWD + 90° */
    readonly TWD_PLUS_90: 147;
    /** TWD - 90° */
    readonly TWD_MINUS_90: 148;
    /** Shadow */
    readonly SHADOW: 149;
    /** Shadow opposite gybe */
    readonly SHADOWOPP: 150;
    /** Downhaul 2 load */
    readonly DOWNHAUL2: 151;
    /** Tacking angle */
    readonly TACK_ANG: 152;
    /** Tacking angle polar */
    readonly TACKANGPL: 153;
    /** Target awa */
    readonly TARGAWA: 154;
    /** Start time to burn X sec port */
    readonly PX_BURN: 155;
    /** Start time to burn X sec strb */
    readonly SX_BURN: 156;
    /** Start time to layline P */
    readonly STTMLAYP: 157;
    /** Start time to layline S */
    readonly STTMLAYS: 158;
    /** Mark current set */
    readonly MK_SET: 159;
    /** Mark current drift */
    readonly MK_DRIFT: 160;
    /** Mark latitude */
    readonly MK_LAT: 161;
    /** Mark longitude */
    readonly MK_LON: 162;
    /** Start port latitude */
    readonly PORT_LAT: 163;
    /** Start port longitude */
    readonly PORT_LON: 164;
    /** Start stbd latitude */
    readonly STBD_LAT: 165;
    /** Start stbd longitude */
    readonly STBD_LON: 166;
    /** GPS estimated position err */
    readonly HPE: 167;
    /** Relative humidity */
    readonly RH: 168;
    /** Lead port */
    readonly LEAD_P: 169;
    /** Lead starboard */
    readonly LEAD_S: 170;
    /** Backstay */
    readonly BACKSTAY: 171;
    /** User 0 */
    readonly USER_0: 172;
    /** User 1 */
    readonly USER_1: 173;
    /** User 2 */
    readonly USER_2: 174;
    /** User 3 */
    readonly USER_3: 175;
    /** User 4 */
    readonly USER_4: 176;
    /** User 5 */
    readonly USER_5: 177;
    /** User 6 */
    readonly USER_6: 178;
    /** User 7 */
    readonly USER_7: 179;
    /** User 8 */
    readonly USER_8: 180;
    /** User 9 */
    readonly USER_9: 181;
    /** User 10 */
    readonly USER_10: 182;
    /** User 11 */
    readonly USER_11: 183;
    /** User 12 */
    readonly USER_12: 184;
    /** User 13 */
    readonly USER_13: 185;
    /** User 14 */
    readonly USER_14: 186;
    /** User 15 */
    readonly USER_15: 187;
    /** User 16 */
    readonly USER_16: 188;
    /** User 17 */
    readonly USER_17: 189;
    /** User 18 */
    readonly USER_18: 190;
    /** User 19 */
    readonly USER_19: 191;
    /** User 20 */
    readonly USER_20: 192;
    /** User 21 */
    readonly USER_21: 193;
    /** User 22 */
    readonly USER_22: 194;
    /** User 23 */
    readonly USER_23: 195;
    /** User 24 */
    readonly USER_24: 196;
    /** User 25 */
    readonly USER_25: 197;
    /** User 26 */
    readonly USER_26: 198;
    /** User 27 */
    readonly USER_27: 199;
    /** User 28 */
    readonly USER_28: 200;
    /** User 29 */
    readonly USER_29: 201;
    /** User 30 */
    readonly USER_30: 202;
    /** User 31 */
    readonly USER_31: 203;
    /** Start time to gun */
    readonly TMTOGUN: 204;
    /** Start time to line */
    readonly TMTOLN: 205;
    /** Start time to burn */
    readonly BURN: 206;
    /** Start distance below line */
    readonly BELOWLN: 207;
    /** Start gun dist below line */
    readonly GUNBLWLN: 208;
    /** Gate lay time on port */
    readonly GTTMONPT: 209;
    /** Gate lay dist on starb */
    readonly GTDTONST: 210;
    /** Gate lay time on starb */
    readonly GTTMONST: 211;
    /** Gate lay dist on port */
    readonly GTDTONPT: 212;
    /** Gate spot time on starb */
    readonly GSTMONSB: 213;
    /** Gate spot time on port */
    readonly GSTMONPT: 214;
    /** Layline up bearing on port */
    readonly PRTUPBRG: 215;
    /** Layline up bearing on strb */
    readonly STBUPBRG: 216;
    /** Layline dn bearing on port */
    readonly PRTDNBRG: 217;
    /** Layline dn bearing on strb */
    readonly STBDNBRG: 218;
    /** Tide left port time */
    readonly TD_L_PT: 219;
    /** Tide left stbd time */
    readonly TD_L_STB: 220;
    /** Tide right port time */
    readonly TD_R_PRT: 221;
    /** Tide right stbd time */
    readonly TD_R_STB: 222;
    /** Tide left time */
    readonly TD_L_TM: 223;
    /** Tide right time */
    readonly TD_R_TM: 224;
    /** Lay bearing on port max */
    readonly PRTBRGMAX: 225;
    /** Lay bearing on port min */
    readonly PRTBRGMIN: 226;
    /** Lay bearing on strb max */
    readonly STBBRGMAX: 227;
    /** Lay bearing on strb min */
    readonly STBBRGMIN: 228;
    /** TWD to lay mark */
    readonly MKLYTWD: 229;
    /** TWD to lay mark opp tack */
    readonly MKLYTWDOP: 230;
    /** Bsp - Sog */
    readonly DBSPSOG: 231;
    /** Heading - Cog */
    readonly DHDGCOG: 232;
    /** Layline time on port ratio */
    readonly RTMONPRT: 233;
    /** Layline time on strb ratio */
    readonly RTMONSTB: 234;
    /** TWD period */
    readonly TWDPERIOD: 235;
    /** TWS period */
    readonly TWSPERIOD: 236;
    /** Target twa */
    readonly TARG_TWA: 237;
    /** Target bsp */
    readonly TARG_BSP: 238;
    /** Tide station */
    readonly TIDE: 239;
    /** Polar 0 */
    readonly POL_0: 240;
    /** Polar 1 */
    readonly POL_1: 241;
    /** Polar 2 */
    readonly POL_2: 242;
    /** Polar 3 */
    readonly POL_3: 243;
    /** Polar 0 % */
    readonly POL_0_PCT: 244;
    /** Polar 1 % */
    readonly POL_1_PCT: 245;
    /** Polar 2 % */
    readonly POL_2_PCT: 246;
    /** Polar 3 % */
    readonly POL_3_PCT: 247;
    /** Polar 0 target */
    readonly POL0TARG: 248;
    /** Polar 1 target */
    readonly POL1TARG: 249;
    /** Polar 2 target */
    readonly POL2TARG: 250;
    /** Polar 3 target */
    readonly POL3TARG: 251;
    /** Wave sig height */
    readonly WVSIGHT: 252;
    /** Wave sig period */
    readonly WVSIGPD: 253;
    /** Wave max height */
    readonly WVMAXHT: 254;
    /** Wave max period */
    readonly WVMAXPD: 255;
    /** GPS time offset */
    readonly GPS_TOFFSET: 256;
    /** Heave */
    readonly HEAVE: 257;
    /** Mwa */
    readonly MWA: 258;
    /** Mws */
    readonly MWS: 259;
    /** Boom position */
    readonly BOOM: 260;
    /** Target bsp % */
    readonly TARGBSP_PCT: 261;
    /** Heading to steer */
    readonly HDG2ST: 262;
    /** Heading to steer polar */
    readonly HDG2STPOL: 263;
    /** Start speed to port */
    readonly STBSTOP: 264;
    /** Start speed to starboard */
    readonly STBSTOS: 265;
    /** Start speed on port */
    readonly STBSONP: 266;
    /** Start speed on starboard */
    readonly STBSONS: 267;
    /** Twist */
    readonly TWIST: 268;
    /** Sail */
    readonly SAIL: 269;
    /** Sail mark */
    readonly SAILMARK: 270;
    /** Sail next mark */
    readonly SAILNEXT: 271;
    /** TWD plus twist */
    readonly TWDTWISTED: 272;
    /** Tack/gybe loss time */
    readonly TACKLOSST: 273;
    /** Tack/gybe loss metres */
    readonly TACKLOSSD: 274;
    /** Instrument trip log */
    readonly TRIPLOG: 275;
    /** Mark bearing - Cog */
    readonly DMKBRGCOG: 276;
    /** Trim (pitch) rate */
    readonly TRIMRATE: 277;
    /** Heel (roll) rate */
    readonly HEELRATE: 278;
    /** Delta polar bsp */
    readonly DPOLBSP: 279;
    /** Delta target heel (roll) */
    readonly DTARGHEEL: 280;
    /** Deflector port */
    readonly DEFLECTORP: 281;
    /** Rudder port */
    readonly RUDDERP: 282;
    /** Rudder starboard */
    readonly RUDDERS: 283;
    /** Rudder toe */
    readonly RUDDERTOE: 284;
    /** Bsp transverse */
    readonly BSPTR: 285;
    /** Forestay inner load */
    readonly FSTAYINNER: 286;
    /** Gate time */
    readonly GATETIME: 287;
    /** Ahead of */
    readonly AHEAD: 288;
    /** Boat brg from 0 */
    readonly BRG: 289;
    /** Boat rng from 0 */
    readonly RNG: 290;
    /** Deflector starboard */
    readonly DEFLECTORS: 291;
    /** Bobstay */
    readonly BOBSTAY: 292;
    /** Outhaul */
    readonly OUTHAUL: 293;
    /** D0 port */
    readonly D0_P: 294;
    /** D0 starboard */
    readonly D0_S: 295;
    /** D1 port */
    readonly D1_P: 296;
    /** D1 starboard */
    readonly D1_S: 297;
    /** V0 port */
    readonly V0_P: 298;
    /** V0 starboard */
    readonly V0_S: 299;
    /** V1 port */
    readonly V1_P: 300;
    /** V1 starboard */
    readonly V1_S: 301;
    /** Start time to port simple */
    readonly STTMPSIMPLE: 302;
    /** Start time to strb simple */
    readonly STTMSSIMPLE: 303;
    /** Target TWD */
    readonly TARGTWD: 304;
    /** Target TWD delta */
    readonly TARGTWDDELTA: 305;
    /** Polar TWS */
    readonly POLTWS: 306;
    /** Polar TWS delta */
    readonly POLTWSDELTA: 307;
    /** Polar TWS % */
    readonly POLTWS_PCT: 308;
    /** Opposite track Cog */
    readonly OPPTRKCOG: 309;
    /** Start pinch time to port */
    readonly STPINCHP: 310;
    /** Start pinch time to strb */
    readonly STPINCHS: 311;
    /** TWD predicted */
    readonly PREDTWD: 312;
    /** TWS predicted */
    readonly PREDTWS: 313;
    /** MSLP predicted */
    readonly PREDMSLP: 314;
    /** Next mark latitude */
    readonly NXMK_LAT: 315;
    /** Next mark longitude */
    readonly NXMK_LON: 316;
    /** Boom angle */
    readonly BOOMANG: 317;
    /** Cunningham */
    readonly CUNNINGHAM: 318;
    /** Forestay inner Halyard */
    readonly FSTAYINHAL: 319;
    /** Jib furl */
    readonly JIBFURL: 320;
    /** Jib halyard */
    readonly JIBH: 321;
    /** Mast cant */
    readonly MASTCANT: 322;
    /** J1 */
    readonly J1: 323;
    /** J2 */
    readonly J2: 324;
    /** J3 */
    readonly J3: 325;
    /** J4 */
    readonly J4: 326;
    /** Foil port */
    readonly FOIL_P: 327;
    /** Foil starboard */
    readonly FOIL_S: 328;
    /** Reacher */
    readonly REACHER: 329;
    /** Blade */
    readonly BLADE: 330;
    /** Staysail */
    readonly STAYSAIL: 331;
    /** Solent */
    readonly SOLENT: 332;
    /** Tack */
    readonly TACK: 333;
    /** Tack port */
    readonly TACKP: 334;
    /** Tack starboard */
    readonly TACKS: 335;
    /** Deflector upper */
    readonly DEFLECTU: 336;
    /** Deflector lower */
    readonly DEFLECTL: 337;
    /** Winch port */
    readonly WINCHP: 338;
    /** Winch starboard */
    readonly WINCHS: 339;
    /** Spinnaker port */
    readonly SPINP: 340;
    /** Spinnaker starboard */
    readonly SPINS: 341;
    /** Main halyard */
    readonly MAINH: 342;
    /** Mast2 */
    readonly MAST2: 343;
    /** Delta polar heel (roll) */
    readonly DPOLHEEL: 344;
    /** Lay bearing on port mean */
    readonly PRTBRGMEAN: 345;
    /** Lay bearing on strb mean */
    readonly STBBRGMEAN: 346;
    /** Lay bearing on port SD */
    readonly PRTBRGSD: 347;
    /** Lay bearing on strb SD */
    readonly STBBRGSD: 348;
    /** Start time to port burn */
    readonly P_BURN: 349;
    /** Start time to strb burn */
    readonly S_BURN: 350;
    /** Depth aft */
    readonly DEPTHAFT: 351;
    /** Start burn % */
    readonly BURN_PCT: 352;
    /** Polar bsp start */
    readonly POLBSPS: 353;
    /** Start gun bsp target % */
    readonly GUNBSPTARG_PCT: 354;
    /** Start gun bsp polar % */
    readonly GUNBSPPOL_PCT: 355;
    /** Start boat to pin time */
    readonly LINETIME: 356;
    /** Course - Cog */
    readonly DCRSCOG: 357;
    /** Layline time GPS */
    readonly LAYTIMEGPS: 358;
    /** Engine temperature */
    readonly ENGTEMP: 359;
    /** Engine oil temperature */
    readonly ENGOILTEMP: 360;
    /** Transmission oil temperature */
    readonly TRANOILTEMP: 361;
    /** Transmission oil pressure */
    readonly TRANOILPRES: 362;
    /** Fuel level */
    readonly FUELLEV: 363;
    /** Current */
    readonly CURRENT: 364;
    /** Charge state % */
    readonly CHARGE_PCT: 365;
    /** Gate range */
    readonly GTRNG: 366;
    /** Gate bearing */
    readonly GTBRG: 367;
    /** TWG */
    readonly TWG: 368;
    /** TWD gust */
    readonly TWDG: 369;
    /** Dew point */
    readonly DEWPT: 370;
    /** Forestay + tack load */
    readonly FSTAY_PLUS_TACK: 371;
    /** Gradient */
    readonly GRADIENT: 372;
    /** TWS plus gradient */
    readonly TWSGRADIENT: 373;
    /** Rudder pitch port */
    readonly RUD_PTCH_P: 374;
    /** Rudder pitch starboard */
    readonly RUD_PTCH_S: 375;
    /** Test time */
    readonly TEST_TIME: 376;
    /** Gate square wind */
    readonly GATESQWIND: 377;
    /** Gate bias length */
    readonly GATEBIASL: 378;
    /** Water level */
    readonly WATERLEV: 379;
    /** Water level 2 */
    readonly WATERLEV2: 380;
    /** Fuel level 2 */
    readonly FUELLEV2: 381;
    /** CAN Load % */
    readonly CANLOAD_PCT: 382;
    /** CAN Fast packet errors */
    readonly FASTPKERR: 383;
    /** Polar bsp start % */
    readonly POLBSPS_PCT: 384;
    /** Target bsp start % */
    readonly TARGBSPS_PCT: 385;
    /** Opposite track - mark brg */
    readonly OPPTRKMK: 386;
    /** Air density */
    readonly AIRDEN: 387;
    /** Air density predicted */
    readonly AIRDENPRED: 388;
    /** Voltage 1 */
    readonly VOLT_1: 389;
    /** Voltage 2 */
    readonly VOLT_2: 390;
    /** Voltage 3 */
    readonly VOLT_3: 391;
    /** Voltage 4 */
    readonly VOLT_4: 392;
    /** Current 1 */
    readonly CURRENT1: 393;
    /** Current 2 */
    readonly CURRENT2: 394;
    /** Current 3 */
    readonly CURRENT3: 395;
    /** Current 4 */
    readonly CURRENT4: 396;
    /** Charge state 1 % */
    readonly CHARGE1_PCT: 397;
    /** Charge state 2 % */
    readonly CHARGE2_PCT: 398;
    /** Charge state 3 % */
    readonly CHARGE3_PCT: 399;
    /** Charge state 4 % */
    readonly CHARGE4_PCT: 400;
    /** Cal ROT */
    readonly CALROT: 401;
    /** Cal brake */
    readonly CALBRAKE: 402;
    /** Cal acceleration */
    readonly CALACCEL: 403;
    /** Sail event */
    readonly SAILEVT: 404;
    /** Mouse time */
    readonly MOUSETM: 405;
    /** Mouse polar time */
    readonly MOUSETMPOL: 406;
    /** Tank port fwd % */
    readonly PORTFWD_PCT: 407;
    /** Tank port aft % */
    readonly PORTAFT_PCT: 408;
    /** Tank stbd fwd % */
    readonly STBDFWD_PCT: 409;
    /** Tank stbd aft % */
    readonly STBDAFT_PCT: 410;
    /** TWD min */
    readonly TWDMIN: 411;
    /** TWD max */
    readonly TWDMAX: 412;
    /** Sea temperature predicted */
    readonly PREDSEATEMP: 413;
};
