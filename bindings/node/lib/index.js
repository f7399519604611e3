// Live sailing channels of the own boat and up to 99 others. What each function does stands in index.d.ts.
'use strict';

const { nameUserChannel, setMob } = require('./client');
const { LibraryNotFoundError } = require('./library');
const { Boat, Channel, UnknownBoatError, UnknownChannelError, View } = require('./view');
const { ChannelId } = require('./channel_ids');

/** The view of the functions here, opened when it is first needed. */
let view;
const theView = () => (view ??= new View());

// One assignment for each, so that `import { get } from 'tallowmere'` finds the names too.
exports.Boat = Boat;
exports.Channel = Channel;
exports.ChannelId = ChannelId;
exports.LibraryNotFoundError = LibraryNotFoundError;
exports.UnknownBoatError = UnknownBoatError;
exports.UnknownChannelError = UnknownChannelError;
exports.View = View;
exports.boat = (boat) => theView().boat(boat);
exports.boats = () => theView().boats();
exports.channel = (channel) => theView().channel(channel);
exports.channels = () => theView().channels();
exports.findBoat = (name) => theView().findBoat(name);
exports.findChannel = (name) => theView().findChannel(name);
exports.get = (channel, boat) => theView().get(channel, boat);
exports.isReplay = () => theView().isReplay;
exports.mob = () => theView().mob();
exports.nameUserChannel = nameUserChannel;
exports.read = (channel, boat) => theView().read(channel, boat);
exports.readGroup = (channels, boat) => theView().readGroup(channels, boat);
exports.samples = (channels, options) => theView().samples(channels, options);
exports.section = () => theView().section();
exports.set = (channel, value, boat) => theView().set(channel, value, boat);
exports.setMob = setMob;
exports.systemFlag = (index) => theView().systemFlag(index);
exports.systemInteger = (index) => theView().systemInteger(index);
exports.systemVariable = (index) => theView().systemVariable(index);
