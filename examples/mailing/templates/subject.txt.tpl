Your order {number}{optional articles::1}, {articles::0::title} and more{/optional}{!optional articles::1}: {articles::0::title}{/optional}
