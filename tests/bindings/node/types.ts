// What a program in TypeScript may and may not say. Compiling is the test.
import * as t from 'tallowmere';
import { ChannelId, type Reading, type Sample, type SamplesOptions } from 'tallowmere';

export async function use(): Promise<void> {
    const speed: number | null = t.get(ChannelId.BSP);
    const reading: Reading = t.read('BSP', 3);
    const channel: t.Channel = t.channel(1);
    const boat: t.Boat | null = t.findBoat('Möwe');
    const done: boolean = channel.set(null) || t.set(channel, 1.5, boat ?? 0);
    const one: 1 = ChannelId.BSP;
    const [red]: [number, number, number] = t.boat(0).colour;
    for await (const row of t.samples([channel, 'AWA', 3], { count: 1, signal: new AbortController().signal })) {
        const sample: Sample = row;
        const time: Date = sample.time;
        const any: number | null = sample.Depth;
        void [time, any];
    }
    for await (const row of t.samples(['BSP', 'AWA'], { interval: 0.1 })) {
        const named: Sample<'BSP' | 'AWA'> = row;
        const time: number = named.time.getTime();
        if (row.BSP !== null) void [row.BSP + 1, time];
        // @ts-expect-error: a value may be missing
        void (row.AWA + 1);
        // @ts-expect-error: not asked for
        void row.Depth;
        // @ts-expect-error: without ages
        void row['BSP age'];
    }
    const names: string[] = ['BSP'];
    for await (const row of new t.View().samples(['BSP'], { ages: true })) {
        if (row['BSP age'] !== null && row.BSP !== null) void (row['BSP age'] + row.BSP);
    }
    const perhaps: SamplesOptions = { ages: names.length > 1 };
    for await (const row of t.samples(['BSP'], perhaps)) {
        const age: number | null | undefined = row['BSP age'];
        void age;
    }
    const options: SamplesOptions = { count: 1 };
    for await (const row of t.samples(names, options)) {
        const values: (number | null)[] = names.map((name) => row[name]);
        void values;
    }
    const view = new t.View();
    const played: boolean = view.isReplay || t.isReplay();
    view.close();
    void [played, speed, reading, done, one, red, t.mob()?.latitude];

    // @ts-expect-error: a value may be missing
    const surely: number = t.get('BSP');
    // @ts-expect-error: made by channel() only
    new t.Channel();
    // @ts-expect-error: no such constant
    void [surely, ChannelId.NOTHING];
    // @ts-expect-error: a value is a number or null
    t.set('BSP', '1');
    // @ts-expect-error: one of the states
    if (t.section() === 'broken') return;
}
