#include "tools/makedemo/democontents.h"

namespace DemoContents {

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

QStringList list(const char *names)
{
    return s(names).split(QStringLiteral(", "), Qt::SkipEmptyParts);
}

} // namespace

QVector<Group> groups()
{
    return {
        {s("Topics"), list("Cooking, Baking, Soups, Garden, Flowers, Vegetables, Herbs, Workshop, Woodwork, "
                           "Repairs, Travel, Drawings")},
        {s("Places"), list("Outdoors, Coast, Forest, Mountains, City, Kitchen")},
        {s("State"), list("Draft, Done, Favourite, To print")},
    };
}

QVector<TextFile> kitchenTexts()
{
    return {
        {s("Rye bread.txt"), list("Baking, Kitchen, Favourite"), s("Two days, little work"),
         s("Rye bread\n\nDay one: 200 g rye flour, 200 g water, a spoon of starter. Cover, leave at room "
           "warmth.\n"
           "Day two: 400 g rye flour, 300 g water, 14 g salt. Fold into a tin, let rise for three hours.\n"
           "Bake for 60 minutes, falling from 240 to 190 degrees.\n")},
        {s("Oat biscuits.txt"), list("Baking, Kitchen, Done"), s("Makes about thirty"),
         s("Oat biscuits\n\n150 g butter, 120 g sugar, 1 egg, 200 g oats, 100 g flour, a pinch of salt.\n"
           "Small heaps, 12 minutes at 180 degrees. They harden as they cool.\n")},
        {s("Plum cake.txt"), list("Baking, Kitchen, Draft"), s("Late summer"),
         s("Plum cake\n\nYeast dough, thin. Plums halved, close together, cut side up.\n"
           "Still to try: less sugar in the dough, more on the plums.\n")},
        {s("Potato soup.txt"), list("Soups, Kitchen, Favourite"), s("Serves four"),
         s("Potato soup\n\n1 kg floury potatoes, 2 leeks, 1 carrot, marjoram, a bay leaf.\n"
           "Cook soft in a litre and a half of stock, mash half of it, leave the rest in pieces.\n")},
        {s("Lentil soup.txt"), list("Soups, Kitchen, Done"), s("Better on the second day"),
         s("Lentil soup\n\n300 g brown lentils, 1 onion, celery, 2 spoons of vinegar at the very end.\n")},
        {s("Tomato soup.txt"), list("Soups, Kitchen, Draft, Vegetables"), s(""),
         s("Tomato soup\n\nRoast the tomatoes first, with garlic, for 40 minutes. Only then the pot.\n")},
        {s("Herb vinegar.txt"), list("Cooking, Herbs, Kitchen"), s("Four weeks in the dark"),
         s("Herb vinegar\n\nTarragon, thyme, one clove of garlic, cider vinegar to the brim. Strain after a "
           "month.\n")},
        {s("Store cupboard.txt"), list("Cooking, Kitchen, To print"), s("What is always there"),
         s("Store cupboard\n\nFlour, oats, lentils, rice, tinned tomatoes, oil, vinegar, salt, yeast, "
           "onions.\n")},
    };
}

QVector<TextFile> gardenTexts()
{
    return {
        {s("Sowing calendar.txt"), list("Garden, Vegetables, To print"), s("For a cool spring"),
         s("Sowing calendar\n\nMarch: peas, spinach under glass.\nApril: carrots, radish, lettuce.\n"
           "May, after the last frost: beans, courgettes.\nJuly: kale, chard for the autumn.\n")},
        {s("Tomatoes.txt"), list("Vegetables, Garden, Done"), s("What worked"),
         s("Tomatoes\n\nDeep pots, watered from below, side shoots off every week. No water on the "
           "leaves.\n")},
        {s("Beans.txt"), list("Vegetables, Garden"), s(""),
         s("Beans\n\nFive to a pole, not before the middle of May. Keep the soil loose until they climb.\n")},
        {s("Roses.txt"), list("Flowers, Garden, Favourite"), s("Pruning"),
         s("Roses\n\nPrune when the forsythia flowers: above an eye that looks outward, at a slant.\n")},
        {s("Tulip plan.txt"), list("Flowers, Garden, Draft"), s("To plant in October"),
         s("Tulip plan\n\nRed behind yellow, white along the path. Twice as deep as the bulb is high.\n")},
        {s("Basil.txt"), list("Herbs, Garden, Kitchen"), s(""),
         s("Basil\n\nPick whole tips, never single leaves. Water in the morning only.\n")},
        {s("Mint.txt"), list("Herbs, Garden"), s("Keep it in a pot"),
         s("Mint\n\nIn a pot, or it is everywhere. Cut back by half in July.\n")},
        {s("Compost.txt"), list("Garden, Done"), s(""),
         s("Compost\n\nOne part green, two parts brown, turned twice a year. Cover it in winter.\n")},
    };
}

QVector<TextFile> workshopAndTravelTexts()
{
    return {
        {s("Dovetail notes.txt"), list("Woodwork, Workshop, Draft"), s("Tails first"),
         s("Dovetail notes\n\nTails first, slope one to seven. Mark the pins from the tails with a "
           "knife.\n")},
        {s("Bookshelf cut list.txt"), list("Woodwork, Workshop, To print"), s("Birch plywood, 18 mm"),
         s("Bookshelf cut list\n\n2 sides 1800 x 280\n5 shelves 764 x 270\n1 back 1800 x 800, 6 mm\n")},
        {s("Chair repair.txt"), list("Repairs, Woodwork, Workshop, Done"), s("Loose joints"),
         s("Chair repair\n\nTake the joint apart, old glue off, hide glue on, a band clamp over night.\n")},
        {s("Bicycle service.txt"), list("Repairs, Workshop"), s("Every spring"),
         s("Bicycle service\n\nChain, brakes, cables, tyres. Grease the seat post. Check the spokes by "
           "ear.\n")},
        {s("Dripping tap.txt"), list("Repairs, Done"), s(""),
         s("Dripping tap\n\nWater off, washer 3/8 inch, a little grease on the thread.\n")},
        {s("Coast path, day one.txt"), list("Travel, Coast, Favourite"), s("18 km, light wind"),
         s("Coast path, day one\n\nFrom the harbour to the lighthouse. Larks all morning, a seal at the "
           "point.\n")},
        {s("Coast path, day two.txt"), list("Travel, Coast"), s("22 km, rain after noon"),
         s("Coast path, day two\n\nThe cliff steps are new. Rain from two o'clock, tea in the boat "
           "house.\n")},
        {s("Hut tour.txt"), list("Travel, Mountains, Draft"), s("Four days"),
         s("Hut tour\n\nDay 1: valley to the lower hut, 900 m up.\nDay 2: over the saddle.\nDay 3: rest.\n"
           "Day 4: down by the old mule track.\n")},
        {s("Packing list.txt"), list("Travel, To print, Done"), s("Never more than nine kilograms"),
         s("Packing list\n\nTwo shirts, a warm layer, a rain coat, map, compass, first aid, a cup, a "
           "book.\n")},
        {s("Mushroom walk.txt"), list("Travel, Forest"), s("Look, do not pick"),
         s("Mushroom walk\n\nAlong the stream to the old beeches. Parasols on the clearing, many ceps.\n")},
        {s("Night trains.txt"), list("Travel, City, Draft"), s(""),
         s("Night trains\n\nBook ten weeks ahead. A middle berth is the quiet one.\n")},
        {s("Museum list.txt"), list("City, Travel"), s("Free on Sundays"),
         s("Museum list\n\nMaps, ships, clocks, paper. One a day is enough.\n")},
    };
}

QVector<TextFile> texts()
{
    return kitchenTexts() + gardenTexts() + workshopAndTravelTexts();
}

QVector<Picture> pictures()
{
    QVector<Picture> pictures{
        {s("Harbour at dusk.png"), list("Travel, Coast, Favourite"), s("Seen from the pier"),
         Picture::Landscape},
        {s("Lighthouse.png"), list("Travel, Coast"), s(""), Picture::Landscape},
        {s("Sand and grass.png"), list("Coast"), s(""), Picture::Landscape},
        {s("Upper valley.png"), list("Travel, Mountains, Favourite"), s("From the saddle"),
         Picture::Landscape},
        {s("First snow.png"), list("Mountains"), s(""), Picture::Landscape},
        {s("Mule track.png"), list("Travel, Mountains"), s(""), Picture::Landscape},
        {s("Beech wood.png"), list("Forest"), s(""), Picture::Landscape},
        {s("Clearing.png"), list("Forest, Travel"), s(""), Picture::Landscape},
        {s("Roofs.png"), list("City"), s(""), Picture::Landscape},
        {s("Evening square.png"), list("City, Travel"), s(""), Picture::Landscape},
        {s("Poppy.png"), list("Flowers, Garden"), s(""), Picture::Flower},
        {s("Aster.png"), list("Flowers, Garden"), s(""), Picture::Flower},
        {s("Marigold.png"), list("Flowers, Garden, Favourite"), s("Keeps the greenfly away"),
         Picture::Flower},
        {s("Cornflower.png"), list("Flowers"), s(""), Picture::Flower},
        {s("Dahlia.png"), list("Flowers, Garden"), s(""), Picture::Flower},
        {s("Chamomile.png"), list("Herbs, Flowers"), s(""), Picture::Flower},
        {s("Borage.png"), list("Herbs, Flowers, Garden"), s(""), Picture::Flower},
        {s("Tile pattern.png"), list("Drawings, Done"), s(""), Picture::Pattern},
        {s("Weave.png"), list("Drawings"), s(""), Picture::Pattern},
        {s("Waves.png"), list("Drawings, Coast"), s(""), Picture::Pattern},
        {s("Quilt.png"), list("Drawings, Draft"), s(""), Picture::Pattern},
        {s("Star lattice.png"), list("Drawings, Favourite"), s(""), Picture::Pattern},
        {s("Hexagons.png"), list("Drawings"), s(""), Picture::Pattern},
        {s("Vegetable beds.png"), list("Garden, Vegetables, To print"), s("Plan of the beds"), Picture::Plan},
        {s("Herb spiral.png"), list("Garden, Herbs, Draft"), s("Plan"), Picture::Plan},
        {s("Workbench.png"), list("Workshop, Woodwork, Drawings"), s("Plan, seen from above"), Picture::Plan},
        {s("Bookshelf.png"), list("Workshop, Woodwork, Drawings"), s("Front view"), Picture::Plan},
        {s("Tool wall.png"), list("Workshop, Drawings, Done"), s(""), Picture::Plan},
        {s("Kitchen plan.png"), list("Kitchen, Drawings"), s(""), Picture::Plan},
        {s("Bird box.png"), list("Woodwork, Garden, Drawings"), s("One board, 15 cm wide"), Picture::Plan},
        {s("Raised bed.png"), list("Woodwork, Garden"), s(""), Picture::Plan},
        {s("Coat rack.png"), list("Woodwork, Draft, Drawings"), s(""), Picture::Plan},
    };
    return pictures;
}

QVector<TextFile> externalTexts()
{
    return {
        {s("Seed order.txt"), list("Garden, Vegetables, Draft"), s("Stays where it is, beside the database"),
         s("Seed order\n\nPeas, early and late. Carrots. Two kinds of lettuce. Borage. Calendula.\n")},
        {s("Tide times.txt"), list("Coast, Travel"), s(""),
         s("Tide times\n\nLow water is about fifty minutes later each day.\n")},
        {s("Paint colours.txt"), list("Workshop, Repairs"), s(""),
         s("Paint colours\n\nWindow frames: RAL 7032. Door: RAL 5014. Bench: linseed oil only.\n")},
        {s("Library books.txt"), list("City, To print"), s(""),
         s("Library books\n\nOn bread. On knots. On clouds. A history of maps.\n")},
    };
}

QVector<Hyperlink> hyperlinks()
{
    return {
        {s("https://www.debian.org/"), list("Workshop, Favourite"), s("The universal operating system")},
        {s("https://doc.qt.io/qt-5/"), list("Workshop"), s("Qt 5 documentation")},
        {s("https://www.sqlite.org/"), list("Workshop"), s("The database under this one")},
        {s("https://www.openstreetmap.org/"), list("Travel, City"), s("Maps")},
    };
}

QVector<Node> nodes()
{
    return {
        {list("Cooking"), true},
        {list("Cooking, Favourite"), true},
        {list("Cooking, - Draft"), true},
        {list("Baking")},
        {list("Soups")},
        {list("Garden")},
        {list("Garden, Flowers")},
        {list("Garden, Vegetables")},
        {list("Garden, Herbs")},
        {list("Garden, - Drawings")},
        {list("Travel")},
        {list("Travel, Outdoors"), true},
        {list("Travel, Coast")},
        {list("Travel, Mountains")},
        {list("Travel, City")},
        {list("Travel, - Draft")},
        {list("Workshop")},
        {list("Workshop, Woodwork")},
        {list("Workshop, Woodwork, - Done")},
        {list("Workshop, Repairs")},
        {list("Drawings")},
        {list("To print")},
    };
}

QVector<QStringList> relationships()
{
    return {
        list("Cooking"),
        list("Cooking, Baking"),
        list("Cooking, Soups"),
        list("Garden"),
        list("Garden, Flowers"),
        list("Garden, Vegetables"),
        list("Garden, Herbs"),
        list("Outdoors"),
        list("Outdoors, Coast"),
        list("Outdoors, Forest"),
        list("Outdoors, Mountains"),
        list("Workshop"),
        list("Workshop, Woodwork"),
        list("Workshop, Repairs"),
    };
}

} // namespace DemoContents
