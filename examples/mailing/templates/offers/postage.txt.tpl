The next book comes free of postage.
{include offer}
